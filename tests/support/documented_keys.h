// documented_keys.h
// The profile keys that the profile's document lists.
#pragma once

#include <filesystem>
#include <set>
#include <string>

// Those in the first column of the document's tables.
std::set<std::string> DocumentedKeys(const std::filesystem::path& document);
