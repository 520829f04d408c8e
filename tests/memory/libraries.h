// libraries.h
// Which loaded library an address of code belongs to.
#pragma once

#include <string>

namespace Memory {

enum class Owner {
  // The module and the libraries of the host SDK.
  kOurs,
  // The simulated cameras and this program: what they allocate is never refused.
  kOthers,
  // The standard libraries, which allocate for whoever called them.
  kCallers,
};

// Looks at what is loaded now; what is loaded later counts as standard libraries.
void FindLibraries();

Owner OwnerOf(const void* code);
// Whom this allocation is for: the first owner on the stack that is no standard library. kOthers where there is none.
// `caller` becomes the address there.
Owner OwnerOnStack(const void*& caller);

// `libkel.core.so+0x1234`, as addr2line takes it.
std::string PlaceOf(const void* code);

}  // namespace Memory
