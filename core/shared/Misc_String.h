#pragma once

// Text helpers shared by every view and exporter that shows a physical quantity: engineering
// unit formatting and parsing, bounded copies into caller buffers, blank removal, the natural
// ordering of net, layer and pin names, and date stamps for file names. The host's other
// modules include them under this one name; each job has a header of its own.
//
// Caller buffers come as (pointer, capacity): capacity counts the characters that may be
// written without the terminating NUL, so the caller provides capacity + 1 bytes. Text
// arguments are NUL-terminated; a null text is a programming error and ends the process with
// a report naming this module and the line. Nothing here keeps state, so every function may be
// called from any thread as long as buffers are not shared. Numbers are read and written with
// a "." decimal point whatever the process locale is.

#include "core/shared/BlankRemoval.h"
#include "core/shared/BoundedCopy.h"
#include "core/shared/CompactExponent.h"
#include "core/shared/DateStamp.h"
#include "core/shared/EngineeringParse.h"
#include "core/shared/NameCollation.h"
#include "core/shared/UnitFormat.h"
