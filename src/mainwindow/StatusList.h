#pragma once

#include <QString>
#include <vector>

class StatusTexts;
struct IDbSession;

// One status message that can be sent.
struct StatusItem {
    int code = 0;
    QString text; // "05 - Arrived"
};

// Reads the status messages of the network afresh, by code, and fills the status texts. What cannot be read
// ends the list without a message, as does a code outside 0..31, which is still in the list.
std::vector<StatusItem> ReadStati(IDbSession& session, StatusTexts& statusTexts);
