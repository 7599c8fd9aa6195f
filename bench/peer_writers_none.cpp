#include "bench/writer_contest.h"

namespace Morquil::Bench {

void AddPeerWriters(std::vector<Contestant>& /*contestants*/, const MessageCorpus& /*corpus*/,
                    const std::string& /*expected*/) {}

}  // namespace Morquil::Bench
