// vimba_library.h
// The VimbaC library by which a module reaches its cameras: which one it is to get, and which one it got.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "VimbaC.h"
#include "base/platform.h"
#include "base/report.h"

namespace Kelcam {

// Loads the library that --vimbac or --simulated asks for, and sets up the scenario: a module that is loaded later gets
// this one. Without both options the loader chooses. Throws Failure, or UsageError for a scenario that there is not.
void LoadChosenVimba(const std::string& vimbac, const std::optional<std::string>& simulated);

// The library that answers a loaded module.
class VimbaLibrary {
 public:
  // None when the module uses no such library.
  static std::optional<VimbaLibrary> Of(const SharedLibrary& module);

  const std::filesystem::path& File() const { return m_file; }
  // Whether its cameras exist in memory only: the library has the simulator's control interface.
  bool IsSimulated() const { return m_is_simulated; }
  // "1.9.0"; "of unknown version" when the library does not answer.
  std::string Version() const;
  // "/path/libVimbaC.so (simulated cameras)"
  std::string Description() const;

  // The library's function of this name, which is one of VimbaC.h. Throws Failure when it lacks that.
  template <class Function>
  Function* Call(const char* name) const {
    return reinterpret_cast<Function*>(Symbol(name));
  }

 private:
  explicit VimbaLibrary(const SharedLibrary& module);
  void* Symbol(const char* name) const;

  SharedLibrary m_module;
  std::filesystem::path m_file;
  bool m_is_simulated = false;
};

// Its file and version, and whether its cameras are simulated.
Json ToJson(const VimbaLibrary& library);

}  // namespace Kelcam
