#pragma once

#include "command_table.h"
#include "state_fixture.h"

namespace velmora::test {

/// A document whose commands are run by their ids, each of which must be on, and files beside it.
using CommandTest = StateTest;

} // namespace velmora::test
