#pragma once

class Map27Executive;
struct IDbSession;
struct IPrompt;
struct IStringSource;

// What the numbering windows work with; all must outlive them. Somebody is logged on while they are open.
struct NumberingServices {
    const IStringSource& strings;
    IPrompt& prompt;
    IDbSession& session;
    Map27Executive& executive;
};
