#include "zVec.h"

#include <gtest/gtest.h>
