// platform.cpp
// The few things that differ between operating systems.
#include "base/platform.h"

#include <atomic>
#include <csignal>
#include <tuple>

#include "base/utf8.h"

#ifdef _WIN32
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#else
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace Kelcam {
namespace {

using NoteSignal = void (*)(int signal);

std::atomic<NoteSignal> note_signal = nullptr;
static_assert(std::atomic<NoteSignal>::is_always_lock_free, "a signal handler reads it");

constexpr std::size_t kUsualTerminalWidth = 80;

}  // namespace

#ifdef _WIN32

namespace {

// The numbers that these requests have on other systems.
constexpr int kHangUp = 1;
constexpr int kTerminate = 15;

// Called on a thread of the system's. What it does not handle ends the program.
BOOL WINAPI OnConsoleEvent(DWORD event) {
  static std::atomic<bool> is_first = true;
  switch (event) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT:
      note_signal.load()(event == CTRL_C_EVENT ? SIGINT : SIGBREAK);
      return is_first.exchange(false);
    default:
      note_signal.load()(event == CTRL_CLOSE_EVENT ? kHangUp : kTerminate);
      // The system ends the program when this returns, or when its patience is over; until then the camera is closed.
      Sleep(INFINITE);
      return TRUE;
  }
}

}  // namespace

void OnRequestToEnd(NoteSignal note) {
  note_signal = note;
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

const char* const kModuleFileName = "kelCameraVimba.dll";
const char* const kVimbaFileName = "VimbaC.dll";
const bool kAddressesNeedReuse = false;

// The C runtime keeps the places of streams that are not there.
void OpenStandardStreams() {}

std::vector<std::string> Utf8Arguments(int, char**) {
  // The narrow arguments have already lost what the system's code page cannot hold.
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8(WString(wide[i])));
  LocalFree(wide);
  return arguments;
}

namespace {

// Null stands for the program.
std::filesystem::path FileOf(HMODULE handle) {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring file(kLongestPath, L'\0');
  file.resize(GetModuleFileNameW(handle, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

}  // namespace

std::filesystem::path ProgramFolder() { return FileOf(nullptr).parent_path(); }

bool StandardErrorIsTerminal() { return _isatty(_fileno(stderr)) != 0; }
bool StandardOutputIsTerminal() { return _isatty(_fileno(stdout)) != 0; }

std::size_t TerminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info)) return kUsualTerminalWidth;
  const int width = info.srWindow.Right - info.srWindow.Left + 1;
  return width > 0 ? static_cast<std::size_t>(width) : kUsualTerminalWidth;
}

// A console interprets sequences when it is asked to; old ones never do.
bool TerminalMovesUp() {
  const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

void MakeStandardOutputBinary() { std::ignore = _setmode(_fileno(stdout), _O_BINARY); }

std::tm CalendarTime(std::time_t time) {
  std::tm parts{};
  std::ignore = localtime_s(&parts, &time);
  return parts;
}

Utf8Console::Utf8Console() : m_before(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
Utf8Console::~Utf8Console() { SetConsoleOutputCP(m_before); }

namespace {

std::string LastErrorText() {
  const DWORD code = GetLastError();
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                                static_cast<DWORD>(std::size(text)), nullptr);
  while (length && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L'.')) --length;
  const std::string number = "system error " + std::to_string(code);
  return length ? Utf8(WString(std::wstring(text, length))) + " (" + number + ")" : number;
}

// The system does not say which library it did not find. Modules need one that may be missing.
std::string MissingLibrary(const std::filesystem::path& file, DWORD error) {
  std::error_code ignored;
  const bool is_search = error == ERROR_MOD_NOT_FOUND && std::filesystem::exists(file, ignored);
  const std::filesystem::path library = kVimbaFileName;
  if (!is_search || std::filesystem::exists(file.parent_path() / library, ignored)) return {};
  return LoadLibraryW(library.c_str()) ? std::string() : kVimbaFileName;
}

}  // namespace

SharedLibrary::SharedLibrary(const std::filesystem::path& file, const std::string& title)
    // What the library needs may be next to it; with this flag the loader looks there first.
    : m_handle(LoadLibraryExW(std::filesystem::absolute(file).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
  if (m_handle) return;
  const DWORD error = GetLastError();
  const std::string reason = LastErrorText();
  throw LoadFailure(title + " " + Utf8(file) + " cannot be loaded: " + reason,
                    MissingLibrary(std::filesystem::absolute(file), error));
}

void* SharedLibrary::Symbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

// A process has one library of a name.
void* SharedLibrary::SymbolOfNeeded(const char* library, const char* name) const {
  const HMODULE handle = GetModuleHandleW(std::filesystem::path(library).c_str());
  return handle ? reinterpret_cast<void*>(GetProcAddress(handle, name)) : nullptr;
}

std::filesystem::path FileOfAddress(const void* address) {
  HMODULE handle = nullptr;
  constexpr DWORD kByAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(kByAddress, static_cast<LPCWSTR>(address), &handle)) return {};
  return FileOf(handle);
}

#else

namespace {

void OnSignal(int signal) { note_signal.load()(signal); }

void OnSignalOnce(int signal) {
  std::signal(signal, SIG_DFL);
  OnSignal(signal);
}

}  // namespace

void OnRequestToEnd(NoteSignal note) {
  note_signal = note;
  std::signal(SIGINT, OnSignalOnce);
  std::signal(SIGTERM, OnSignalOnce);
  // A terminal that goes sends more than one; and each later write beyond the limit sends another. Whoever started the
  // program with nohup wants none.
  if (std::signal(SIGHUP, OnSignal) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
  std::signal(SIGXFSZ, OnSignal);
  // Whoever read the output may be gone; that must not keep the camera from being closed.
  std::signal(SIGPIPE, SIG_IGN);
}

const char* const kModuleFileName = "libkelCameraVimba.so";
const char* const kVimbaFileName = "libVimbaC.so";
const bool kAddressesNeedReuse = true;

void OpenStandardStreams() {
  // In this order each gets the lowest free number, its own. Standard output can only be read: a result that nobody
  // gets is an error.
  constexpr std::pair<int, int> kStreams[] = {
      {STDIN_FILENO, O_RDONLY}, {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_WRONLY}};
  for (const auto& [descriptor, access] : kStreams) {
    if (fcntl(descriptor, F_GETFD) < 0) std::ignore = open("/dev/null", access);
  }
}

std::vector<std::string> Utf8Arguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

std::filesystem::path ProgramFolder() { return std::filesystem::read_symlink("/proc/self/exe").parent_path(); }

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) == 1; }
bool StandardOutputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }

std::size_t TerminalWidth() {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualTerminalWidth;
}

bool TerminalMovesUp() { return true; }

void MakeStandardOutputBinary() {}

std::tm CalendarTime(std::time_t time) {
  std::tm parts{};
  std::ignore = localtime_r(&time, &parts);
  return parts;
}

Utf8Console::Utf8Console() : m_before(0) {}
Utf8Console::~Utf8Console() = default;

namespace {

// "libVimbaC.so: cannot open shared object file: ..." names a library without its folder when it was searched for.
std::string MissingLibrary(const std::string& reason) {
  const std::size_t end = reason.find(": cannot open shared object file");
  return end == std::string::npos || reason.find('/') < end ? std::string() : reason.substr(0, end);
}

}  // namespace

SharedLibrary::SharedLibrary(const std::filesystem::path& file, const std::string& title)
    // An absolute name: a bare one would be looked for on the library path instead of in this folder.
    : m_handle(dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (m_handle) return;
  const std::string reason = dlerror();
  throw LoadFailure(title + " " + Utf8(file) + " cannot be loaded: " + reason, MissingLibrary(reason));
}

void* SharedLibrary::Symbol(const char* name) const { return dlsym(m_handle, name); }

// The lookup goes on in what the library was linked to.
void* SharedLibrary::SymbolOfNeeded(const char* /*library*/, const char* name) const { return Symbol(name); }

std::filesystem::path FileOfAddress(const void* address) {
  Dl_info info{};
  return dladdr(address, &info) && info.dli_fname ? info.dli_fname : std::filesystem::path();
}

#endif

}  // namespace Kelcam
