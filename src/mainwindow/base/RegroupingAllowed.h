#pragma once

// Which of the regrouping commands the selection allows.
struct RegroupingAllowed {
    bool regroup = false;
    bool sendName = false;
    bool ungroup = false;

    bool operator==(const RegroupingAllowed&) const = default;
};
