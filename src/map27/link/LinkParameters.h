#pragma once

#include "map27/codec/Octets.h"
#include "map27/link/Time.h"

#include <cstddef>
#include <cstdint>

namespace map27 {

// What one end proposes and how long it waits (MAP27 v1.5, 4.5). N1, k and the version are negotiated down to
// the minimum of both ends; the times are each end's own.
struct LinkParameters {
    std::uint8_t n1 = 14;     // longest LT data part = 16 * (n1 + 1) octets
    std::uint8_t k = 1;       // LTs that may be outstanding
    std::uint8_t version = 1; // of the standard

    unsigned bitRate = 9600; // bits per second on the line; 0: the line takes no time

    Milliseconds t0First{100};     // first repetition of LR while the link is set up, doubled each time ...
    Milliseconds t0Longest{15000}; // ... up to this
    Milliseconds t1{1500};         // repetition of an LT
    Milliseconds t2{0};            // delay of an LA that is not wanted at once; 0: all are sent at once
    Milliseconds t3{10000};        // an LA is sent at least this often, at most 15 s
    Milliseconds t4{80000};        // silence that fails the link, more than N3 (5) * T3 of the peer
    int n2 = 10;                   // how often an LT may go unanswered; the last time fails the link

    // Treat an LT numbered outside the peer's window as a failed link instead of as a repetition (optional in
    // the standard).
    bool checkWindow = false;

    std::size_t queueLimit = 256; // how many messages may wait for credit before Send refuses more

    std::size_t LongestMessage() const { return 16 * (std::size_t{n1} + 1); }

    // N1, k and the version of a body that is an LR.
    void TakeMinima(const Octets& linkRequest);
    bool Accept(const Octets& linkRequest) const;

    // T0 and T1 suit 9600 bit/s; this scales them for another line. 0: an unpaced line, times as for 9600.
    static LinkParameters ForBitRate(unsigned bitsPerSecond);
};

} // namespace map27
