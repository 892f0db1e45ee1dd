#include "command/prompt/prompt_history.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <system_error>

namespace finance::command {

namespace {

constexpr mode_t folder_mode = S_IRWXU;
constexpr mode_t file_mode = S_IRUSR | S_IWUSR;

// A folder named by the environment counts where it is absolute.
std::filesystem::path folder_in(const char* variable) {
    const char* value = std::getenv(variable);
    std::filesystem::path folder{value != nullptr ? value : ""};
    return folder.is_absolute() ? folder : std::filesystem::path{};
}

bool make_folder(const std::filesystem::path& folder) {
    std::error_code fault;
    if (std::filesystem::is_directory(folder, fault)) return true;
    if (folder.has_parent_path() && folder.parent_path() != folder && !make_folder(folder.parent_path())) return false;
    return ::mkdir(folder.c_str(), folder_mode) == 0;
}

// Opens nothing but a usual file, and without waiting: a pipe or a device has no history. -1 where there is none.
int open_file(const std::filesystem::path& path, int flags) {
    struct stat about {};
    const int file = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, file_mode);
    if (file < 0 || (::fstat(file, &about) == 0 && S_ISREG(about.st_mode))) return file;
    ::close(file);
    return -1;
}

// Whether all of the text went to the file.
bool write_text(const std::filesystem::path& path, int flags, std::string_view text) {
    const int file = open_file(path, O_WRONLY | O_CREAT | flags);
    if (file < 0) return false;
    const ssize_t written = ::write(file, text.data(), text.size());
    return ::close(file) == 0 && written == static_cast<ssize_t>(text.size());
}

// "" where it cannot be read.
std::string read_text(const std::filesystem::path& path) {
    constexpr std::size_t block = 65'536;
    const int file = open_file(path, O_RDONLY);
    std::string text;
    for (ssize_t n = file < 0 ? 0 : 1; n > 0;) {
        const std::size_t size = text.size();
        text.resize(size + block);
        n = ::read(file, text.data() + size, block);
        text.resize(size + static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
    }
    if (file >= 0) ::close(file);
    return text;
}

}  // namespace

std::filesystem::path history_path() {
    const std::filesystem::path home = folder_in("HOME");
    std::filesystem::path state = folder_in("XDG_STATE_HOME");
    if (state.empty() && !home.empty()) state = home / ".local" / "state";
    return state.empty() ? state : state / "finance" / "history";
}

std::vector<std::string> PromptHistory::read() const {
    std::vector<std::string> lines;
    std::istringstream file{read_text(file_)};
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    if (lines.size() <= kept_lines) return lines;
    const bool overfull = lines.size() > 2 * kept_lines;
    lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(kept_lines));
    if (overfull) rewrite(lines);
    return lines;
}

void PromptHistory::add(std::string_view line) const {
    if (file_.empty() || !make_folder(file_.parent_path())) return;
    write_text(file_, O_APPEND, std::string{line} + '\n');
}

// A new file takes the place of the old one once it is complete.
void PromptHistory::rewrite(const std::vector<std::string>& lines) const {
    std::string text;
    for (const std::string& line : lines) text.append(line).append("\n");
    const std::filesystem::path fresh = file_.string() + '.' + std::to_string(::getpid());
    std::error_code fault;
    if (write_text(fresh, O_TRUNC, text)) std::filesystem::rename(fresh, file_, fault);
    if (std::filesystem::exists(fresh, fault)) std::filesystem::remove(fresh, fault);
}

}  // namespace finance::command
