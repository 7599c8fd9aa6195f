#pragma once

/// Names the operation by which a sink receives the block that `Description` describes, as a part of that description:
/// all operations together, in the order of the block table, make up `IMorquilTextProtocolSink`.
#define MORQUIL_DELIVERED_BY(operation, Description)                             \
    template <class Sink>                                                        \
    struct Operation : Sink {                                                    \
        virtual void operation(const ::Morquil::ChangeSetOf<Description>& set) { \
            this->template Pass<Description>(set);                               \
        }                                                                        \
        static constexpr auto deliver = &Operation::operation;                   \
    }
