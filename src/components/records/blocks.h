#pragma once

// All blocks of a record.
#include "components/records/blocks_gsm.h"
#include "components/records/blocks_lte.h"
#include "components/records/blocks_scan.h"
#include "components/records/blocks_service.h"
#include "components/records/blocks_td.h"
#include "components/records/blocks_td_more.h"
