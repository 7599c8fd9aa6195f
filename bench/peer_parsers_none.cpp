#include "bench/parser_contest.h"

namespace Morquil::Bench {

void AddPeerParsers(std::vector<Contestant>& /*contestants*/, const Corpus& /*corpus*/) {}

}  // namespace Morquil::Bench
