// The small operations of records and entries, each beside the least that does the same.
#pragma once

#include "report/suite.h"

void add_record_cases(Suite& suite);
