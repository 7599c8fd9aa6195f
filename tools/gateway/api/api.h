// The API as a whole: from a request to a response.
#pragma once

#include "gateway/api/endpoint.h"

namespace Morquil::Gateway {

struct Route;

/// Threads: the context's.
class Api {
public:
    explicit Api(Services& services) : services_(services) {}

    /// Answers a request, at once or later.
    void Handle(Request request, const Reply& reply);

    /// The first checks of every request, of one for a stream as well: where it comes from, and who sends it. Fills in
    /// the identity. What everybody may read, such as the panel's files, needs none.
    /// Returns: the problem, if there is one.
    std::optional<Response> Admit(Request& request) const;

    /// What a stream is to show.
    /// Returns: nothing, and the problem in `refusal`.
    std::optional<View> ReadView(const Request& request, Response& refusal) const;

    /// A command that came in a stream: {id, op: "set", device, property, value}. `done` gets {id, status, body}.
    void Command(const Request& request, std::string_view text, std::function<void(Json)> done);

private:
    void Dispatch(const Route& route, const SharedRequest& request, const Reply& reply);

    Services& services_;
};

}  // namespace Morquil::Gateway
