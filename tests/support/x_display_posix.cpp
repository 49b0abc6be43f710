// Starts processes on a virtual X server and reads the memory of its screen.
#include "support/x_display.h"

#include "support/paths.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tonewright {
namespace {

using namespace std::chrono_literals;

constexpr unsigned LongestLife = 300; // seconds, of any process of a test

// The server keeps its screen in a file of this name, as a window dump: numbers of four bytes, the
// high byte first, then colours of twelve bytes each, then the pixels.
constexpr const char *ScreenFileName = "Xvfb_screen0";
constexpr std::size_t HeaderSizeField = 0;
constexpr std::size_t WidthField = 4;
constexpr std::size_t HeightField = 5;
constexpr std::size_t BitsPerPixelField = 11;
constexpr std::size_t BytesPerLineField = 12;
constexpr std::size_t ColourCountField = 19;
constexpr std::size_t HeaderFields = 20; // as far as it is read
constexpr std::size_t ColourSize = 12;
constexpr std::size_t PixelSize = 4;

std::size_t HeaderNumber(const std::vector<std::uint8_t> &dump, std::size_t field) {
    std::size_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8 | dump.at(4 * field + i);
    }
    return number;
}

struct ScreenFile {
    int descriptor;

    explicit ScreenFile(const std::string &path) : descriptor(open(path.c_str(), O_RDONLY)) {}
    ~ScreenFile() { close(descriptor); }
    ScreenFile(const ScreenFile &) = delete;
    ScreenFile &operator=(const ScreenFile &) = delete;

    std::vector<std::uint8_t> Read(std::size_t offset, std::size_t size) const {
        std::vector<std::uint8_t> bytes(size);
        if (pread(descriptor, bytes.data(), size, static_cast<off_t>(offset)) !=
            static_cast<ssize_t>(size)) {
            throw std::runtime_error("the screen cannot be read");
        }
        return bytes;
    }
};

} // namespace

bool Becomes(const std::function<bool()> &condition, TestClock::duration time) {
    const auto deadline = TestClock::now() + time;
    while (!condition()) {
        if (TestClock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

Process::Process(const Strings &command, const Strings &environment, int output, int errors) {
    id = fork();
    if (id != 0) {
        return;
    }
    for (const std::string &variable : environment) {
        putenv(const_cast<char *>(variable.c_str()));
    }
    alarm(LongestLife); // should the owner not live to end it
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, 0);
    dup2(output == -1 ? nowhere : output, 1);
    dup2(errors == -1 ? nowhere : errors, 2);
    std::vector<char *> words;
    for (const std::string &word : command) {
        words.push_back(const_cast<char *>(word.c_str()));
    }
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
}

Process::~Process() {
    Kill();
}

bool Process::HasEnded() {
    if (id > 0 && waitpid(id, &status, WNOHANG) == id) {
        id = -1;
    }
    return id <= 0;
}

bool Process::Ends(TestClock::duration time) {
    return Becomes([this] { return HasEnded(); }, time);
}

int Process::ExitStatus() const {
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Process::Kill() {
    if (!HasEnded()) {
        kill(id, SIGKILL);
        waitpid(id, &status, 0);
        id = -1;
    }
}

void Process::Halt() {
    if (!HasEnded()) {
        kill(id, SIGSTOP);
        waitpid(id, &status, WUNTRACED); // until it stands still, or has ended just before
        if (!WIFSTOPPED(status)) {
            id = -1;
        }
    }
}

void Process::GoOn() {
    if (id > 0) {
        kill(id, SIGCONT);
    }
}

std::uint32_t ScreenPicture::At(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x));
}

bool XDisplay::Start(const std::string &screen, const std::string &focus) {
    int ends[2];
    if (pipe(ends) != 0) {
        return false;
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    // It writes its number there as soon as it is ready, and turns nobody away while a last client
    // leaves.
    server.emplace(Strings{"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", screen,
                           "-fbdir", folder.path.string(), "-nolisten", "tcp", "-noreset"},
                   Strings{});
    close(ends[1]);
    std::string number;
    for (char digit; read(ends[0], &digit, 1) == 1 && digit != '\n';) {
        number += digit;
    }
    close(ends[0]);
    if (number.empty()) {
        return false;
    }
    environment = {"DISPLAY=:" + number, "HOME=" + folder.path.string()};
    const std::string settings = folder.WriteText(
        "jwmrc", "<?xml version=\"1.0\"?><JWM><FocusModel>" + focus + "</FocusModel></JWM>");
    manager.emplace(Strings{"jwm", "-f", settings}, environment);
    return true;
}

std::optional<std::string> XDisplay::Tool(Strings words) const {
    words.insert(words.begin(), "xdotool");
    std::FILE *output = std::tmpfile();
    if (!output) {
        return std::nullopt;
    }
    Process tool(words, environment, fileno(output), -1);
    const bool done = tool.Ends(3s) && tool.ExitStatus() == 0;
    std::rewind(output);
    std::string text;
    for (int byte; (byte = std::fgetc(output)) != EOF;) {
        text += static_cast<char>(byte);
    }
    std::fclose(output);
    return done ? std::optional(text) : std::nullopt;
}

std::string XDisplay::FindWindow(const std::string &title) const {
    const auto found = Tool({"search", "--onlyvisible", "--name", title});
    return found ? found->substr(0, found->find('\n')) : "";
}

std::optional<ScreenPlace> XDisplay::SizeOf(const std::string &window) const {
    // What it says of the place is wrong for a window that has a frame.
    const auto text = Tool({"getwindowgeometry", "--shell", window});
    if (!text) {
        return std::nullopt;
    }
    const auto number = [&](const std::string &name) {
        const auto at = text->find(name);
        return at == std::string::npos ? 0 : std::atoi(text->c_str() + at + name.size());
    };
    return ScreenPlace{0, 0, number("\nWIDTH="), number("\nHEIGHT=")};
}

ScreenPicture XDisplay::Screen(std::optional<ScreenPlace> place) const {
    const ScreenFile file(folder.File(ScreenFileName));
    const std::vector<std::uint8_t> header = file.Read(0, 4 * HeaderFields);
    if (HeaderNumber(header, BitsPerPixelField) != 8 * PixelSize) {
        throw std::runtime_error("the screen has pixels of another size");
    }
    const std::size_t begin =
        HeaderNumber(header, HeaderSizeField) + ColourSize * HeaderNumber(header, ColourCountField);
    const std::size_t line = HeaderNumber(header, BytesPerLineField);
    const int width = static_cast<int>(HeaderNumber(header, WidthField));
    const int height = static_cast<int>(HeaderNumber(header, HeightField));
    const ScreenPlace wanted = place.value_or(ScreenPlace{0, 0, width, height});
    const int left = std::clamp(wanted.x, 0, width);
    const int top = std::clamp(wanted.y, 0, height);
    ScreenPicture picture;
    picture.width = std::clamp(wanted.x + wanted.width, left, width) - left;
    picture.height = std::clamp(wanted.y + wanted.height, top, height) - top;
    const auto columns = static_cast<std::size_t>(picture.width);
    picture.pixels.reserve(columns * static_cast<std::size_t>(picture.height));
    for (int y = top; y < top + picture.height; ++y) {
        const auto row = file.Read(begin + line * static_cast<std::size_t>(y) +
                                       PixelSize * static_cast<std::size_t>(left),
                                   PixelSize * columns);
        for (std::size_t at = 0; at < row.size(); at += PixelSize) { // blue, green, red, nothing
            picture.pixels.push_back(
                static_cast<std::uint32_t>(row[at] | row[at + 1] << 8 | row[at + 2] << 16));
        }
    }
    return picture;
}

ProgramOnDisplay::ProgramOnDisplay(const XDisplay &display) : display(display) {}

void ProgramOnDisplay::Start(const Strings &arguments, const Strings &settings,
                             const Strings &environment) {
    std::filesystem::create_directories(home.path / ".config/Quillbrook");
    std::filesystem::create_directory(home.path / "runtime");
    std::filesystem::permissions(home.path / "runtime", std::filesystem::perms::owner_all);
    std::string lines = "[Tonewright]\n";
    for (const std::string name : {"ShowStartupWindow = ", "ShowTipOfTheDay = ",
                                   "ShowWelcomeWizard = ", "CreateBackups = "}) {
        const bool isGiven = std::ranges::any_of(
            settings, [&](const std::string &setting) { return setting.starts_with(name); });
        lines += isGiven ? "" : name + "0\n";
    }
    for (const std::string &setting : settings) {
        lines += setting + "\n";
    }
    WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), lines);
    StartAgain(arguments, environment);
}

void ProgramOnDisplay::StartAgain(const Strings &arguments, const Strings &environment) {
    Strings variables = display.environment;
    for (const std::string &variable :
         {"HOME=" + home.path.string(), "XDG_CONFIG_HOME=" + home.File(".config"),
          "XDG_RUNTIME_DIR=" + home.File("runtime"), std::string("QT_QPA_PLATFORM=xcb"),
          "LSAN_OPTIONS=print_suppressions=0:suppressions='" + SourceFile("tests/lsan.supp") +
              "'"}) {
        variables.push_back(variable);
    }
    // The keyboard library of X measures a text that has no end of its own, which the strict
    // checks of a sanitized build take for an error.
    const char *checks = std::getenv("ASAN_OPTIONS");
    variables.push_back(std::string("ASAN_OPTIONS=") + (checks ? checks : "") +
                        ":strict_string_checks=0");
    variables.insert(variables.end(), environment.begin(), environment.end());
    Strings command = {file.empty() ? WindowProgram() : file};
    command.insert(command.end(), arguments.begin(), arguments.end());
    process.emplace(command, variables);
}

bool ProgramOnDisplay::Stands(const std::string &document) {
    return Becomes(
        [&] {
            window = display.FindWindow("Tonewright . " + document);
            return !window.empty();
        },
        15s);
}

bool ProgramOnDisplay::Press(const Strings &keys) const {
    if (!display.Tool({"windowactivate", "--sync", window})) {
        return false;
    }
    Strings words = {"key", "--clearmodifiers", "--delay", "5"};
    words.insert(words.end(), keys.begin(), keys.end());
    return display.Tool(words).has_value();
}

} // namespace tonewright
