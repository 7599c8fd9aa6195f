// The words in which the device protocol spells values, one struct per vocabulary:
//   Value  the API enumeration, or a number where the API has none
//   words  the words in the order of their values; its Size() means "absent" and "unknown"
#pragma once

#include "protocol/words/ancillary.h"            // IWYU pragma: export
#include "protocol/words/audio.h"                // IWYU pragma: export
#include "protocol/words/picture.h"              // IWYU pragma: export
#include "protocol/words/sources_and_formats.h"  // IWYU pragma: export
#include "protocol/words/video_modes.h"          // IWYU pragma: export
