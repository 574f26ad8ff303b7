#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include <base/Printed.h>
#include <base/Program.h>

namespace sim {

namespace {

constexpr std::size_t kMaxComplaint = 1000; // bytes

unsigned ByteAt(std::string_view text, std::size_t place) {
    return place < text.size() ? static_cast<unsigned char>(text[place]) : 0;
}

// The first byte of U+0080 to U+009f, which terminals obey as they do the lower ones.
bool IsUpperControl(std::string_view text, std::size_t place) {
    return ByteAt(text, place) == 0xc2 && ByteAt(text, place + 1) >= 0x80 && ByteAt(text, place + 1) < 0xa0;
}

} // namespace

void OpenStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // Takes the lowest free number: this one.
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF && open("/dev/null", O_RDONLY) < 0)
            return;
    }
}

std::string EscapeControls(std::string_view text) {
    std::string escaped;
    for (std::size_t place = 0; place < text.size(); ++place) {
        const unsigned byte = ByteAt(text, place);
        const bool isLower = byte < 0x20 && byte != '\n' && byte != '\t';
        if (isLower || byte == 0x7f || IsUpperControl(text, place) || (place > 0 && IsUpperControl(text, place - 1)))
            escaped += Printed("\\x%02x", byte);
        else
            escaped += text[place];
    }
    return escaped;
}

void Complain(const char* program, std::string_view line) {
    std::string shown = EscapeControls(line.substr(0, kMaxComplaint));
    for (std::size_t end = 0; (end = shown.find('\n', end)) != std::string::npos;)
        shown.replace(end, 1, "\\x0a");
    if (line.size() > kMaxComplaint) {
        // Not in the middle of a character.
        while (!shown.empty() && (ByteAt(shown, shown.size() - 1) & 0xc0) == 0x80)
            shown.pop_back();
        if (!shown.empty() && ByteAt(shown, shown.size() - 1) >= 0xc0)
            shown.pop_back();
        shown += "...";
    }
    static_cast<void>(std::fputs((std::string(program) + ": " + shown + "\n").c_str(), stderr));
}

bool FlushOutput(const char* program) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return true;
    Complain(program, "standard output: " + std::generic_category().message(errno != 0 ? errno : EIO));
    return false;
}

} // namespace sim
