#pragma once

// All command classes.

#include "tov/cmd/attr.h"
#include "tov/cmd/clock_def.h"
#include "tov/cmd/clock_group_def.h"
#include "tov/cmd/cmd.h"
#include "tov/cmd/false_path.h"
#include "tov/cmd/gen_clock_def.h"
#include "tov/cmd/io_delay.h"
#include "tov/cmd/multi_path.h"
#include "tov/cmd/timing_delay.h"
