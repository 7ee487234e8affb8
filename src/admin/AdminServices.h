#pragma once

class Map27Executive;
struct IDbSession;
struct IPrompt;
struct IStringSource;

// What the administration windows work with; all must outlive them.
struct AdminServices {
    IDbSession& session;
    IPrompt& prompt;
    Map27Executive& executive;
    const IStringSource& strings;
};
