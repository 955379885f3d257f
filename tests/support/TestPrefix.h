#pragma once
#include "../../cmake/CorePrefix.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
