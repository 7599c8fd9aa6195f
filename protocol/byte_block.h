// As many bytes as the processor looks at in one go. A block offers
//   `size`                        the number of its bytes
//   `Below(limit)`                a mark for every byte below `limit`, which is at most 0x80
//   `Equal(byte)`                 a mark for every byte that equals `byte`
//   `First(marks)`                the place of the first mark; `size` or more when there is none
//   `WithoutFirst(marks, count)`  the marks of all but the first bytes, counted from the first of those
#pragma once

#ifdef __SSE2__
#include "protocol/byte_block_sse2.h"
#else
#include "protocol/byte_block_word.h"
#endif

namespace Morquil {

#ifdef __SSE2__
using ByteBlock = Sse2Block;
#else
using ByteBlock = WordBlock;
#endif

}  // namespace Morquil
