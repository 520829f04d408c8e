// camera/feature_nodes.h
// What the features of a simulated camera are made of.
#pragma once

#include "library/feature.h"

namespace Simulator {

using VimbaLibrary::Access;
using VimbaLibrary::BoolNode;
using VimbaLibrary::CommandNode;
using VimbaLibrary::EnumEntry;
using VimbaLibrary::EnumNode;
using VimbaLibrary::Feature;
using VimbaLibrary::FeatureMap;
using VimbaLibrary::FloatNode;
using VimbaLibrary::FloatRange;
using VimbaLibrary::IntegerNode;
using VimbaLibrary::IntegerRange;
using VimbaLibrary::StringNode;

}  // namespace Simulator
