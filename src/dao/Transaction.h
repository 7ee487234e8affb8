#pragma once

namespace dao {

class Workspace;

// A transaction of a workspace (see Workspace::BeginTrans) for as long as a scope: undone at its end, unless
// Commit was reached. The workspace outlives it.
class Transaction {
public:
    enum class Changes { OneByOne, Together }; // BeginTrans or BeginTogether
    explicit Transaction(Workspace& workspace, Changes changes = Changes::OneByOne);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    // After one that fails the transaction is undone at the end of the scope.
    void Commit();

private:
    Workspace& m_workspace;
    bool m_done = false;
};

} // namespace dao
