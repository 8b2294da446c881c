#pragma once

#include "native_names.hpp"

using CachedNames = NativeNames;
