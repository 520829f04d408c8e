// lockedmemory.h
// Memory that the system keeps in physical memory.
#pragma once

#include <cstddef>

// Whole pages, zeroed, locked where the system lets this process lock them, and ordinary memory otherwise. Null when
// there is no memory, and for no bytes.
void* AllocateLockedPages(std::size_t bytes);
// With the size that was asked for; null is skipped.
void FreeLockedPages(void* memory, std::size_t bytes);
