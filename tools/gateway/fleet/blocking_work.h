#pragma once

#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <utility>

namespace Morquil::Gateway {

/// One thread for what may block for a moment: ending connections, and files.
class BlockingWork {
public:
    template <class Work>
    void Run(Work work) {
        boost::asio::post(pool_, std::move(work));
    }
    /// Waits until everything is done. Nothing may be run afterwards.
    void Join() { pool_.join(); }

private:
    boost::asio::thread_pool pool_{1};
};

}  // namespace Morquil::Gateway
