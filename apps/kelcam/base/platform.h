// platform.h
// The few things that differ between operating systems.
#pragma once

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"

namespace Kelcam {

// The module's file name where none is given.
extern const char* const kModuleFileName;
// The library by which a module reaches cameras.
extern const char* const kVimbaFileName;

// Called before any file is opened: a standard stream that the program was started without gets a place of its own, so
// that no file takes it and gets what is meant for the stream. Writing to standard output then fails.
void OpenStandardStreams();

// Calls `note` with the number of the signal for Ctrl-C, SIGTERM, the end of the terminal (SIGHUP) and a file that grew
// beyond the limit of the process (SIGXFSZ); on Windows for Ctrl-C, Ctrl-Break, a closed console (as SIGHUP) and the
// end of the session (as SIGTERM). A second Ctrl-C, Ctrl-Break or SIGTERM ends the program at once. `note` may do what
// a signal handler may.
void OnRequestToEnd(void (*note)(int signal));

// The arguments without the program's name, in UTF-8.
std::vector<std::string> Utf8Arguments(int argc, char** argv);

std::filesystem::path ProgramFolder();

bool StandardErrorIsTerminal();
bool StandardOutputIsTerminal();
// How many characters fit a line of the terminal at standard error; 80 if that is not known.
std::size_t TerminalWidth();
// Whether the terminal at standard error follows the sequence that moves the cursor to the line above.
bool TerminalMovesUp();

// Whether a listener must ask for a port whose last listener has just gone. Where it need not, asking would share the
// port with one that still listens.
extern const bool kAddressesNeedReuse;

// From now on standard output passes on bytes as they are. Nothing may have been written to it.
void MakeStandardOutputBinary();

// The calendar's date and the time of day, here.
std::tm CalendarTime(std::time_t time);

// Makes the console take UTF-8 for as long as the object lives.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();  // on Windows it has something to put back
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  [[maybe_unused]] unsigned m_before;
};

// A library that cannot be loaded.
class LoadFailure : public Failure {
 public:
  // missing: the file name of the library that it needs and that the loader does not find; empty: another reason.
  LoadFailure(const std::string& text, std::string missing) : Failure(text), m_missing(std::move(missing)) {}

  const std::string& Missing() const { return m_missing; }

 private:
  std::string m_missing;
};

// A loaded library. It stays loaded to the end of the process, which has no use for the room.
class SharedLibrary {
 public:
  // Throws LoadFailure with the system's reason: "TITLE FILE cannot be loaded: ...".
  explicit SharedLibrary(const std::filesystem::path& file, const std::string& title = "the module");

  // Null when the library has none of this name.
  void* Symbol(const char* name) const;
  // The same for the library of this file name that this one was linked to. Null, too, when it was linked to none.
  void* SymbolOfNeeded(const char* library, const char* name) const;

 private:
  void* m_handle;
};

// The file of the loaded library that this address is in; empty: it is in none.
std::filesystem::path FileOfAddress(const void* address);

}  // namespace Kelcam
