#pragma once

#include "replay/TemporaryDirectory.h"

namespace ovinta::test {

using replay::TemporaryDirectory;

}  // namespace ovinta::test
