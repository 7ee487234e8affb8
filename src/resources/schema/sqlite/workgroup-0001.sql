-- Schema 1 of the workgroup file: accounts, groups and who belongs to which.

CREATE TABLE file_info (
    name VARCHAR(32) PRIMARY KEY NOT NULL,
    value VARCHAR(255) NOT NULL
) WITHOUT ROWID;

-- password_hash is an Argon2id hash in its printable form, which carries salt and cost.
CREATE TABLE account (
    account_id INTEGER PRIMARY KEY AUTOINCREMENT,
    user_name VARCHAR(64) NOT NULL CONSTRAINT user_name CHECK (length(user_name) BETWEEN 1 AND 64),
    pid VARCHAR(20) NOT NULL CONSTRAINT pid CHECK (length(pid) <= 20),
    password_hash TEXT NOT NULL
);
CREATE UNIQUE INDEX i_user_name ON account (kyn_fold(user_name));

CREATE TABLE account_group (
    group_name VARCHAR(64) PRIMARY KEY NOT NULL CONSTRAINT group_name CHECK (length(group_name) BETWEEN 1 AND 64)
) WITHOUT ROWID;

CREATE TABLE membership (
    account_id INTEGER NOT NULL REFERENCES account (account_id) ON DELETE CASCADE,
    group_name VARCHAR(64) NOT NULL REFERENCES account_group (group_name) ON DELETE CASCADE,
    PRIMARY KEY (account_id, group_name)
) WITHOUT ROWID;

INSERT INTO account_group (group_name) VALUES ('Admins'), ('Users');
