#pragma once

#include "tov/base/progress.h"  // TovProgress; below the folders that share it
