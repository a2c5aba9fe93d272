// All public headers.

#pragma once

#include "orv/base.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "orv/text/code_page.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/interfaces.h"
#include "orv/text/string.h"
#include "orv/text/string_ref.h"
