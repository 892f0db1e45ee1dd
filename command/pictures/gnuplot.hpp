// Pictures, drawn by the program gnuplot.
//
//  (1) gnuplot is given one script, data included, through a pipe, and gives the picture back through another: no
//      shell and no file name is involved, nor any start-up file.
//  (2) Text of the user's goes into a script by `gnuplot_string` only.
//  (3) The picture's file is opened once the picture is there, and removed if it cannot be written whole.
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

namespace finance::command {

// No gnuplot, no picture, no place to write to: exit status 1.
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

// An option that names the picture's file: "--plot FILE" or "--plot=FILE".
class PictureOption {
public:
    explicit PictureOption(std::string_view name) : name_{name} {}

    // Whether the word at i is the option; i then stands on its last word. UsageError.
    bool take(std::span<const std::string_view> words, std::size_t& i);
    [[nodiscard]] const std::optional<std::string_view>& file() const { return file_; }

private:
    std::string_view name_;
    std::optional<std::string_view> file_{};
};

// ---- Pieces of a script

// A string that stands for itself. Whatever has a meaning to gnuplot, quotation marks and backquotes above all, is
// written by its octal code, since gnuplot does not see a doubled mark everywhere. Control characters and what is not
// ASCII become '?'.
std::string gnuplot_string(std::string_view text);
// "NaN" for what is not finite: a gap in a line.
std::string gnuplot_number(double value);
// Numbers in columns, under the name $name.
std::string data_block(std::string_view name, std::span<const std::vector<double>> rows);

// ---- Drawing

// The picture that the script draws; PictureError.
std::string drawn(std::string_view script, PictureFormat format);

// PictureError.
void write_picture(const std::filesystem::path& file, std::string_view picture);

}  // namespace finance::command
