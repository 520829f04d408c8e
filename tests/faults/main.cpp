// main.cpp
// The sweeps over everything that a library, a camera or a network can do wrong.
//   kel-sweep faults|answers|frames [--reduced | --cases N] [--processes N] [--case CASE]
// --cases runs N of all cases, evenly spread; --case runs one, as a finding names it.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "answer_cases.h"
#include "case_runner.h"
#include "fault_cases.h"
#include "frame_cases.h"
#include "sweep.h"
#include "virtual_waits.h"

namespace {

constexpr std::size_t kPairs = 5000;
// A reduced sweep is a test among others. Where waits take their time it has fewer cases.
constexpr std::size_t kReducedTo = 400;
constexpr std::size_t kReducedToWithRealWaits = 12;

struct Options {
  std::string sweep;
  std::optional<std::size_t> reduced_to;
  std::size_t processes = 1;
  std::optional<std::string> one_case;
};

std::vector<Case> CasesOf(const std::string& sweep, const LivesCalls& lives) {
  if (sweep == "faults") return FaultCases(lives, kPairs);
  if (sweep == "answers") return AnswerCases(lives);
  if (sweep == "frames") return FrameCases();
  throw std::invalid_argument("no sweep is called " + sweep);
}

class Lives final : public CaseSource {
 public:
  Lives(std::string sweep, std::optional<std::size_t> reduced_to)
      : m_sweep(std::move(sweep)), m_reduced_to(reduced_to) {}

  std::vector<std::string> Cases() override {
    const std::vector<Case> cases = CasesOf(m_sweep, m_runner.Calls());
    const std::size_t step = m_reduced_to ? std::max<std::size_t>(1, cases.size() / *m_reduced_to) : 1;
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < cases.size(); i += step) texts.push_back(cases[i].Text());
    return texts;
  }
  Findings Run(const std::string& text) override { return m_runner.Run(Case::Parse(text)); }

 private:
  const std::string m_sweep;
  const std::optional<std::size_t> m_reduced_to;
  CaseRunner m_runner;
};

// The one case that was asked for.
class OneCase final : public CaseSource {
 public:
  OneCase(std::unique_ptr<CaseSource> source, std::string text)
      : m_source(std::move(source)), m_text(std::move(text)) {}
  std::vector<std::string> Cases() override { return {m_text}; }
  Findings Run(const std::string& text) override { return m_source->Run(text); }

 private:
  const std::unique_ptr<CaseSource> m_source;
  const std::string m_text;
};

Options Read(const std::vector<std::string>& arguments) {
  Options options;
  if (arguments.empty()) throw std::invalid_argument("which sweep: faults, answers or frames?");
  options.sweep = arguments.front();
  options.processes = std::max(1U, std::thread::hardware_concurrency());
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (arguments[i] == "--reduced") {
      options.reduced_to = VirtualWaits::Available() ? kReducedTo : kReducedToWithRealWaits;
    } else if (arguments[i] == "--cases") {
      options.reduced_to = std::stoul(arguments.at(++i));
    } else if (arguments[i] == "--processes") {
      options.processes = std::stoul(arguments.at(++i));
    } else if (arguments[i] == "--case") {
      options.one_case = arguments.at(++i);
      options.processes = 1;
    } else {
      throw std::invalid_argument("unknown option " + arguments[i]);
    }
  }
  return options;
}

int Run(const Options& options) {
  const MakeCases make = [&]() -> std::unique_ptr<CaseSource> {
    VirtualWaits::TurnOn();
    auto source = std::make_unique<Lives>(options.sweep, options.reduced_to);
    if (!options.one_case) return source;
    return std::make_unique<OneCase>(std::move(source), *options.one_case);
  };
  const SweepOutcome outcome = Sweep(make, options.processes, "kel-sweep " + options.sweep + " --case");
  std::cout << options.sweep << ": " << outcome.runs << " runs, " << outcome.findings << " findings\n";
  return outcome.findings == 0 && outcome.runs != 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kUsageError = 2;
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    return Run(Read(arguments));
  } catch (const std::exception& error) {
    std::cerr << "kel-sweep: " << error.what() << "\n";
    return kUsageError;
  }
}
