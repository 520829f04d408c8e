// vimba_library.cpp
// The VimbaC library by which a module reaches its cameras: which one it is to get, and which one it got.
#include "library/vimba_library.h"

#include "base/utf8.h"
#include "library/scenario.h"
#include "vimba_simulator.h"

namespace Kelcam {
namespace {

constexpr const char* kTitle = "the VimbaC library";
// Names of --vimbac.
constexpr const char* kAravis = "aravis";
constexpr const char* kSimulated = "simulated";
// What every such library has, and what only the simulated one has.
constexpr const char* kAnyCall = "VmbVersionQuery";
constexpr const char* kSimulatorCall = "VimbaSimConfigure";

// A package has the simulated library in a folder of its own; in a build folder everything is in one.
std::filesystem::path SimulatedLibraryFile() {
  const std::filesystem::path own_folder = ProgramFolder() / "simulator" / kVimbaFileName;
  return std::filesystem::exists(own_folder) ? own_folder : ProgramFolder() / kVimbaFileName;
}

// The library for GigE Vision cameras of any maker, which comes with this program on Linux.
std::filesystem::path AravisLibraryFile() {
  std::filesystem::path file = ProgramFolder() / kAravis / kVimbaFileName;
  if (!std::filesystem::exists(file)) {
    throw Failure("--vimbac " + std::string(kAravis) +
                  ": this kelcam was built without it (Linux with Aravis alone has it); " + Utf8(file) + " is missing");
  }
  return file;
}

// A name stands for a library that comes with this program; a folder of that name is written ./NAME.
std::filesystem::path LibraryFileOf(const std::string& choice) {
  if (choice == kSimulated) return SimulatedLibraryFile();
  if (choice == kAravis) return AravisLibraryFile();
  std::filesystem::path file = Path(choice) / kVimbaFileName;
  if (!std::filesystem::exists(file)) {
    throw Failure("--vimbac " + choice + ": there is no " + kVimbaFileName + " in this folder");
  }
  return file;
}

void SetUpScenario(const SharedLibrary& library, const std::string& scenario) {
  const std::filesystem::path file = ScenarioFile(scenario);
  const std::string text = ReadScenario(file);
  const auto configure = reinterpret_cast<decltype(&VimbaSimConfigure)>(library.Symbol(kSimulatorCall));
  const auto last_error = reinterpret_cast<decltype(&VimbaSimLastError)>(library.Symbol("VimbaSimLastError"));
  if (configure(text.c_str()) != 0) {
    throw Failure("the scenario " + Utf8(file) + " cannot be used: " + (last_error ? last_error() : "no reason given"));
  }
}

void LoadSimulated(const std::string& scenario) {
  const std::filesystem::path file = SimulatedLibraryFile();
  const SharedLibrary library(file, kTitle);
  if (!library.Symbol(kSimulatorCall)) throw Failure("the VimbaC library " + Utf8(file) + " has no simulated cameras");
  if (!scenario.empty()) SetUpScenario(library, scenario);
}

}  // namespace

void LoadChosenVimba(const std::string& vimbac, const std::optional<std::string>& simulated) {
  if (simulated) {
    LoadSimulated(*simulated);
  } else if (!vimbac.empty()) {
    const SharedLibrary library(LibraryFileOf(vimbac), kTitle);
  }
}

std::optional<VimbaLibrary> VimbaLibrary::Of(const SharedLibrary& module) {
  if (!module.SymbolOfNeeded(kVimbaFileName, kAnyCall)) return std::nullopt;
  return VimbaLibrary(module);
}

VimbaLibrary::VimbaLibrary(const SharedLibrary& module)
    : m_module(module),
      m_file(std::filesystem::weakly_canonical(FileOfAddress(Symbol(kAnyCall)))),
      m_is_simulated(module.SymbolOfNeeded(kVimbaFileName, kSimulatorCall) != nullptr) {}

void* VimbaLibrary::Symbol(const char* name) const {
  void* const address = m_module.SymbolOfNeeded(kVimbaFileName, name);
  if (!address) throw Failure("the VimbaC library " + Utf8(m_file) + " does not export " + name);
  return address;
}

std::string VimbaLibrary::Version() const {
  VmbVersionInfo_t version{};
  if (Call<decltype(VmbVersionQuery)>(kAnyCall)(&version, sizeof version) != VmbErrorSuccess) {
    return "of unknown version";
  }
  return std::to_string(version.major) + "." + std::to_string(version.minor) + "." + std::to_string(version.patch);
}

std::string VimbaLibrary::Description() const { return Utf8(m_file) + (m_is_simulated ? " (simulated cameras)" : ""); }

Json ToJson(const VimbaLibrary& library) {
  return {{"file", Utf8(library.File())}, {"version", library.Version()}, {"simulated", library.IsSimulated()}};
}

}  // namespace Kelcam
