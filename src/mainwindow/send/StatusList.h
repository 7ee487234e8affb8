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

// Reads the status messages of the network afresh, by code, and fills the status texts. A code outside 0..31
// ends the list without a message, but is still in it. Raises Error and dao::Error when they cannot be read;
// the texts are as they were then.
std::vector<StatusItem> ReadStati(IDbSession& session, StatusTexts& statusTexts);
