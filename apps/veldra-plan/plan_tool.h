#pragma once
// What test fixtures and benchmarks use to write, copy and import plans and the symbol
// library.

#include "veldra-plan/empty_plan.h"
#include "veldra-plan/plan_copy.h"
#include "veldra-plan/plan_import.h"
#include "veldra-plan/plan_schema.h"
#include "veldra-plan/sample_plan.h"
#include "veldra-plan/symbol_library.h"
