// process.cpp
// Programs as processes of their own: started with arguments, an environment and caught output.
#include "support/process.h"

#include <array>
#include <stdexcept>
#include <thread>
#include <tuple>

#include "bmutex.h"

#ifdef _WIN32
#include <windows.h>
// after it
#include <psapi.h>
#include <tlhelp32.h>
#else
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
extern char** environ;  // NOLINT(readability-redundant-declaration): some headers leave it out
#endif

namespace {

#ifdef _WIN32
using Pipe = HANDLE;
using Child = HANDLE;

std::wstring WideText(const std::string& utf8) {
  std::wstring wide(utf8.size(), L'\0');
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()),
                                                           wide.data(), static_cast<int>(wide.size()))));
  return wide;
}

// As the C runtime and CommandLineToArgvW take it apart again.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : argument) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring EnvironmentBlock(const std::map<std::string, std::string>& added) {
  std::map<std::wstring, std::wstring> variables;
  wchar_t* own = GetEnvironmentStringsW();
  for (const wchar_t* entry = own; *entry; entry += std::wcslen(entry) + 1) {
    const std::wstring text = entry;
    const std::size_t equals = text.find(L'=', 1);
    variables[text.substr(0, equals)] = text.substr(equals + 1);
  }
  FreeEnvironmentStringsW(own);
  for (const auto& [name, value] : added) variables[WideText(name)] = WideText(value);
  std::wstring block;
  for (const auto& [name, value] : variables) block += name + L"=" + value + L'\0';
  return block + L'\0';
}

void MakePipe(Pipe& read_end, Pipe& write_end) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  if (!CreatePipe(&read_end, &write_end, &inherited, 0)) throw std::runtime_error("no pipe");
  SetHandleInformation(read_end, HANDLE_FLAG_INHERIT, 0);
}

std::size_t ReadSome(Pipe pipe, char* buffer, std::size_t size) {
  DWORD count = 0;
  return ReadFile(pipe, buffer, static_cast<DWORD>(size), &count, nullptr) ? count : 0;
}

void Close(Pipe pipe) { CloseHandle(pipe); }

// Its C runtime ends a line of text by two characters.
std::string TextOf(const std::string& output) {
  std::string text;
  for (std::size_t i = 0; i < output.size(); ++i) {
    if (output.compare(i, 2, "\r\n") != 0) text += output[i];
  }
  return text;
}

Child Start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment, Pipe out, Pipe err) {
  std::wstring line = Quoted(program.wstring());
  for (const std::string& argument : arguments) line += L" " + Quoted(WideText(argument));
  std::wstring block = EnvironmentBlock(environment);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = out;
  start.hStdError = err;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT, block.data(),
                      nullptr, &start, &process)) {
    throw std::runtime_error("cannot start " + program.string() + ": system error " + std::to_string(GetLastError()));
  }
  CloseHandle(process.hThread);
  return process.hProcess;
}

bool SendInterrupt(Child) { return false; }

std::size_t ThreadsOf(Child child) {
  const DWORD id = GetProcessId(child);
  const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  std::size_t count = 0;
  for (BOOL found = Thread32First(all, &thread); found; found = Thread32Next(all, &thread)) {
    if (thread.th32OwnerProcessID == id) ++count;
  }
  CloseHandle(all);
  return count;
}

ProcessUse UseOf(Child child) {
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(child, &memory, sizeof memory);
  DWORD handles = 0;
  GetProcessHandleCount(child, &handles);
  return {memory.WorkingSetSize, ThreadsOf(child), handles};
}

void Kill(Child child) { TerminateProcess(child, 1); }

int ExitCodeOf(Child child) {
  WaitForSingleObject(child, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(child, &code);
  CloseHandle(child);
  return static_cast<int>(code);
}

constexpr const char* kProgramEnding = ".exe";

std::filesystem::path OwnFile() {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring file(kLongestPath, L'\0');
  file.resize(GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

#else
using Pipe = int;
using Child = pid_t;

void MakePipe(Pipe& read_end, Pipe& write_end) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  read_end = ends[0];
  write_end = ends[1];
}

std::size_t ReadSome(Pipe pipe, char* buffer, std::size_t size) {
  const ssize_t count = read(pipe, buffer, size);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void Close(Pipe pipe) { close(pipe); }

std::string TextOf(const std::string& output) { return output; }

std::vector<std::string> EnvironmentWith(const std::map<std::string, std::string>& added) {
  std::vector<std::string> variables;
  for (char** entry = environ; *entry; ++entry) {
    const std::string text = *entry;
    if (!added.count(text.substr(0, text.find('=')))) variables.push_back(text);
  }
  for (const auto& [name, value] : added) variables.push_back(std::string(name).append("=").append(value));
  return variables;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

Child Start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment, Pipe out, Pipe err) {
  std::vector<std::string> words{program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = EnvironmentWith(environment);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
  // Whoever runs the tests in the background may ignore this signal.
  sigset_t by_default;
  sigemptyset(&by_default);
  sigaddset(&by_default, SIGHUP);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &by_default);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  Child child = 0;
  const int error =
      posix_spawn(&child, program.c_str(), &actions, &attributes, Pointers(words).data(), Pointers(variables).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error) throw std::runtime_error("cannot start " + program.string() + ": " + std::strerror(error));
  return child;
}

std::size_t EntriesOf(const std::filesystem::path& folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

ProcessUse UseOf(Child child) {
  const std::filesystem::path folder = "/proc/" + std::to_string(child);
  std::ifstream file(folder / "statm");
  std::size_t pages = 0;
  std::size_t resident_pages = 0;
  file >> pages >> resident_pages;
  return {resident_pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), EntriesOf(folder / "task"),
          EntriesOf(folder / "fd")};
}

bool SendSignal(Child child, int number) { return kill(child, number) == 0; }
bool SendInterrupt(Child child) { return SendSignal(child, SIGINT); }
void Kill(Child child) { kill(child, SIGKILL); }

// As a shell reports it: 128 and the signal's number for a process that a signal ended.
int ExitCodeOf(Child child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

constexpr const char* kProgramEnding = "";

std::filesystem::path OwnFile() { return std::filesystem::read_symlink("/proc/self/exe"); }

#endif

std::size_t TimesIn(const std::string& output, const std::string& text) {
  std::size_t times = 0;
  for (std::size_t at = output.find(text); at != std::string::npos; at = output.find(text, at + text.size())) ++times;
  return times;
}

}  // namespace

// Each output is read by a thread of its own until the process has closed it.
struct Process::State {
  using Clock = std::chrono::steady_clock;
  static constexpr std::size_t kOut = 0;
  static constexpr std::size_t kErr = 1;
  static constexpr std::size_t kOutputs = 2;

  Child child{};
  bool waited = false;
  std::array<std::thread, kOutputs> readers;

  BMutex mutex;
  BCondition changed;
  std::array<std::string, kOutputs> outputs KEL_GUARDED_BY(mutex);
  std::size_t open_outputs KEL_GUARDED_BY(mutex) = kOutputs;

  void Read(Pipe pipe, std::size_t index) {
    std::array<char, 4096> buffer;
    while (const std::size_t count = ReadSome(pipe, buffer.data(), buffer.size())) {
      const BMutexLock lock(mutex);
      outputs[index].append(buffer.data(), count);
      changed.NotifyAll();
    }
    Close(pipe);
    const BMutexLock lock(mutex);
    --open_outputs;
    changed.NotifyAll();
  }

  bool WaitForErrors(const std::string& text, std::size_t count, Clock::time_point deadline) {
    BMutexLock lock(mutex);
    while (TimesIn(outputs[kErr], text) < count) {
      if (open_outputs == 0 || Clock::now() >= deadline) return false;
      changed.WaitUntil(lock, deadline);
    }
    return true;
  }

  bool WaitForEnd(Clock::time_point deadline) {
    BMutexLock lock(mutex);
    while (open_outputs != 0 && Clock::now() < deadline) changed.WaitUntil(lock, deadline);
    return open_outputs == 0;
  }

  ProcessResult Result(int exit_code) {
    const BMutexLock lock(mutex);
    return {exit_code, TextOf(outputs[kOut]), TextOf(outputs[kErr]), outputs[kOut]};
  }
};

Process::Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const std::map<std::string, std::string>& environment)
    : m_state(std::make_unique<State>()) {
  std::array<Pipe, State::kOutputs> read_ends{};
  std::array<Pipe, State::kOutputs> write_ends{};
  for (std::size_t i = 0; i < State::kOutputs; ++i) MakePipe(read_ends[i], write_ends[i]);
  m_state->child = Start(program, arguments, environment, write_ends[State::kOut], write_ends[State::kErr]);
  for (std::size_t i = 0; i < State::kOutputs; ++i) {
    Close(write_ends[i]);
    m_state->readers[i] = std::thread(&State::Read, m_state.get(), read_ends[i], i);
  }
}

Process::~Process() {
  if (m_state && !m_state->waited) std::ignore = Wait(std::chrono::milliseconds(0));
}

bool Process::WaitForError(const std::string& text, std::chrono::milliseconds timeout) {
  return WaitForErrors(text, 1, timeout);
}

bool Process::WaitForErrors(const std::string& text, std::size_t count, std::chrono::milliseconds timeout) {
  return m_state->WaitForErrors(text, count, State::Clock::now() + timeout);
}

ProcessUse Process::Use() const { return UseOf(m_state->child); }

bool Process::Interrupt() { return SendInterrupt(m_state->child); }

#if !defined(_WIN32)
bool Process::Signal(int number) { return SendSignal(m_state->child, number); }
#endif

ProcessResult Process::Wait(std::chrono::milliseconds timeout) {
  const bool ended = m_state->WaitForEnd(State::Clock::now() + timeout);
  if (!ended) Kill(m_state->child);
  const int exit_code = ExitCodeOf(m_state->child);
  for (std::thread& reader : m_state->readers) reader.join();
  m_state->waited = true;
  return m_state->Result(ended ? exit_code : ProcessResult::kHadToBeEnded);
}

std::filesystem::path ProgramFile(const std::string& name) { return OwnFile().parent_path() / (name + kProgramEnding); }
