// vimba_codes.cpp
// What the numbers in the driver's messages mean.
#include "messages/vimba_codes.h"

#include <algorithm>
#include <iterator>

namespace Kelcam {
namespace {

struct VimbaCode {
  int code;
  std::string_view meaning;
};

constexpr VimbaCode kVimbaCodes[] = {
    {-1, "internal fault of the library"},
    {-2, "the library is not started"},
    {-3, "not found"},
    {-4, "bad handle"},
    {-5, "the device is not open"},
    {-6, "no access"},
    {-7, "bad parameter"},
    {-8, "wrong size of a record"},
    {-9, "more data than requested"},
    {-10, "the feature has another type"},
    {-11, "value out of range, or unknown entry"},
    {-12, "the camera did not answer in time"},
    {-13, "other error"},
    {-14, "out of resources"},
    {-15, "not possible now"},
    {-16, "no transport layer"},
    {-17, "not implemented"},
    {-18, "not supported"},
    {-19, "incomplete"},
    {-20, "input or output failed"},
};

}  // namespace

std::string_view MeaningOfVimbaCode(int code) {
  const auto* const found = std::find_if(std::begin(kVimbaCodes), std::end(kVimbaCodes),
                                         [&](const VimbaCode& candidate) { return candidate.code == code; });
  return found == std::end(kVimbaCodes) ? std::string_view() : found->meaning;
}

}  // namespace Kelcam
