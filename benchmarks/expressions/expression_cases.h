// The library's expressions beside other engines: short texts, hostile texts, building.
#pragma once

#include "report/suite.h"

void add_expression_cases(Suite& suite);
