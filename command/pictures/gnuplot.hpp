// Pictures, drawn by the program gnuplot.
//
//  (1) gnuplot is given one script, data included, through a pipe, and gives the picture back through another: no
//      shell and no file name is involved, nor any start-up file.
//  (2) Text of the user's goes into a script by `gnuplot_string` only.
//  (3) The picture's file is opened once the picture is there (command/files/output_file.hpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "command/options.hpp"

namespace finance::command {

// No gnuplot, no picture: exit status 1.
class PictureError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class PictureFormat : std::uint8_t {
    svg,
    png,
    characters,  // for a terminal
};

// By the file's ending; UsageError where it is none that can be drawn.
PictureFormat picture_format(std::string_view file);

// The value of an option that names the picture's file. UsageError where it is none, or is given twice.
std::optional<std::string_view> picture_file(const OptionsGiven& given, std::string_view name);

// ---- Pieces of a script

// A string that stands for itself. Whatever has a meaning to gnuplot, quotation marks and backquotes above all, is
// written by its octal code, since gnuplot does not see a doubled mark everywhere. Control characters and what is not
// ASCII become '?'.
std::string gnuplot_string(std::string_view text);
// The same between tags.
std::string xml_text(std::string_view text);
// "NaN" for what is not finite: a gap in a line.
std::string gnuplot_number(double value);
// Numbers in columns, under the name $name.
std::string data_block(std::string_view name, std::span<const std::vector<double>> rows);

// ---- Drawing

// The picture that the script draws; PictureError. titles: what an SVG says of itself and then of each curve.
std::string drawn(std::string_view script, PictureFormat format, std::span<const std::string> titles);

// OutputError, ClosedPipe.
void write_picture(const std::filesystem::path& file, std::string_view picture);

}  // namespace finance::command
