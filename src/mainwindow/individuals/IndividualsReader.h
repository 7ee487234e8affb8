#pragma once

#include "mainwindow/individuals/IndividualsModel.h"

struct IDbSession;

// Reads the individual radios that match a search text, `most` at most; where the directory keeps duty status
// only those on duty. What was read before a failure stays in the vector. Raises Error and dao::Error.
void ReadIndividuals(IDbSession& session, const QString& lookfor, int most, std::vector<IndividualRow>& rows);

// The same from what the session has read; asks no database and does not raise.
void DrawIndividuals(IDbSession& session, const QString& lookfor, int most, std::vector<IndividualRow>& rows);
