-- Schema 1 of the database. Constraints carry the name of the field that they guard, since error messages show it.
-- Booleans are 0 or 1 in a column declared BOOLEAN, times are milliseconds since 1970 in UTC in one declared
-- DATETIME, and the size of a text field stands in its declaration: the program reads all three from there.

CREATE TABLE file_info (
    name VARCHAR(32) PRIMARY KEY NOT NULL,
    value VARCHAR(255) NOT NULL
) WITHOUT ROWID;

-- The indexes by the names that the program opens them with. "PrimaryKey" is the name of several.
CREATE TABLE index_def (
    table_name VARCHAR(64) NOT NULL,
    index_name VARCHAR(64) NOT NULL,
    field_no SMALLINT NOT NULL,
    field_name VARCHAR(64) NOT NULL,
    ignore_case BOOLEAN NOT NULL DEFAULT 0,
    PRIMARY KEY (table_name, index_name, field_no)
) WITHOUT ROWID;

-- Queries that the program runs by name. table_name is the table that an updatable query edits.
CREATE TABLE stored_query (
    name VARCHAR(64) PRIMARY KEY NOT NULL COLLATE NOCASE,
    sql TEXT NOT NULL,
    table_name VARCHAR(64)
) WITHOUT ROWID;

-- Type: 1 individual, 2 talkgroup. Ids are never used again, since users' settings remember them.
CREATE TABLE address (
    address_id INTEGER PRIMARY KEY AUTOINCREMENT,
    callsign VARCHAR(14) NOT NULL CONSTRAINT callsign CHECK (length(callsign) BETWEEN 1 AND 14),
    "IDENT" VARCHAR(64) NOT NULL CONSTRAINT "IDENT" CHECK (length("IDENT") BETWEEN 1 AND 64),
    dynamic BOOLEAN NOT NULL DEFAULT 0 CONSTRAINT dynamic CHECK (dynamic IN (0, 1)),
    note VARCHAR(255) CONSTRAINT note CHECK (length(note) <= 255),
    "Type" SMALLINT NOT NULL CONSTRAINT "Type" CHECK ("Type" IN (1, 2)),
    "Name" VARCHAR(255) CONSTRAINT "Name" CHECK (length("Name") <= 255),
    default_pos SMALLINT CONSTRAINT default_pos CHECK (default_pos BETWEEN 1 AND 16),
    on_duty BOOLEAN NOT NULL DEFAULT 0 CONSTRAINT on_duty CHECK (on_duty IN (0, 1))
);
CREATE UNIQUE INDEX i_callsign ON address (kyn_fold(callsign));
CREATE UNIQUE INDEX i_ident ON address ("IDENT");

CREATE TABLE status (
    status_code INTEGER PRIMARY KEY CONSTRAINT status_code CHECK (status_code BETWEEN 0 AND 31),
    in_desc VARCHAR(255) CONSTRAINT in_desc CHECK (length(in_desc) <= 255),
    out_desc VARCHAR(255) CONSTRAINT out_desc CHECK (length(out_desc) <= 255)
);

-- The message log: records are added and never touched again.
CREATE TABLE event (
    event_id INTEGER PRIMARY KEY,
    time_stamp DATETIME NOT NULL CONSTRAINT time_stamp CHECK (typeof(time_stamp) = 'integer'),
    event_type INTEGER NOT NULL CONSTRAINT event_type CHECK (typeof(event_type) = 'integer'),
    "desc" VARCHAR(255) NOT NULL DEFAULT '' CONSTRAINT "desc" CHECK (length("desc") <= 255),
    from_address TEXT NOT NULL DEFAULT '',
    to_address TEXT NOT NULL DEFAULT ''
);
CREATE INDEX i_time_stamp ON event (time_stamp);
CREATE TRIGGER event_no_update BEFORE UPDATE ON event
BEGIN
    SELECT RAISE(ABORT, 'event records can only be appended');
END;
CREATE TRIGGER event_no_delete BEFORE DELETE ON event
BEGIN
    SELECT RAISE(ABORT, 'event records can only be appended');
END;
-- "INSERT OR REPLACE" would delete without the trigger above.
CREATE TRIGGER event_no_replace BEFORE INSERT ON event
WHEN EXISTS (SELECT 1 FROM event WHERE event_id = NEW.event_id)
BEGIN
    SELECT RAISE(ABORT, 'event records can only be appended');
END;

-- A radio holds at most one group at each position.
CREATE TABLE dynamic_regroup (
    group_id INTEGER NOT NULL REFERENCES address (address_id) ON DELETE RESTRICT,
    member_id INTEGER NOT NULL REFERENCES address (address_id) ON DELETE RESTRICT,
    pos SMALLINT NOT NULL CONSTRAINT pos CHECK (typeof(pos) = 'integer' AND pos BETWEEN 0 AND 255),
    PRIMARY KEY (group_id, member_id, pos)
) WITHOUT ROWID;
CREATE UNIQUE INDEX "MemberPos" ON dynamic_regroup (member_id, pos);

CREATE TABLE fleet (
    fleet_name VARCHAR(64) PRIMARY KEY NOT NULL CONSTRAINT fleet_name CHECK (length(fleet_name) BETWEEN 1 AND 64),
    fleet_type SMALLINT NOT NULL CONSTRAINT fleet_type CHECK (typeof(fleet_type) = 'integer'),
    digits SMALLINT NOT NULL CONSTRAINT digits CHECK (typeof(digits) = 'integer'),
    prefix SMALLINT NOT NULL CONSTRAINT prefix CHECK (typeof(prefix) = 'integer'),
    base_ident SMALLINT NOT NULL CONSTRAINT base_ident CHECK (typeof(base_ident) = 'integer'),
    max_ident SMALLINT NOT NULL CONSTRAINT max_ident CHECK (typeof(max_ident) = 'integer'),
    notes VARCHAR(255) CONSTRAINT notes CHECK (length(notes) <= 255)
);
CREATE INDEX i_fleetbase ON fleet (prefix, base_ident);

CREATE TABLE user_profile (
    profile_id INTEGER PRIMARY KEY AUTOINCREMENT,
    "UserName" VARCHAR(64) NOT NULL CONSTRAINT "UserName" CHECK (length("UserName") BETWEEN 1 AND 64),
    callsign VARCHAR(14) NOT NULL DEFAULT '' CONSTRAINT callsign CHECK (length(callsign) <= 14),
    allow_dr BOOLEAN NOT NULL DEFAULT 0 CONSTRAINT allow_dr CHECK (allow_dr IN (0, 1)),
    logged_on BOOLEAN NOT NULL DEFAULT 0 CONSTRAINT logged_on CHECK (logged_on IN (0, 1))
);
CREATE INDEX i_user ON user_profile (kyn_fold("UserName"));

CREATE TABLE kyn_registry (
    "Key" VARCHAR(64) PRIMARY KEY NOT NULL CONSTRAINT "Key" CHECK (length("Key") BETWEEN 1 AND 64),
    "Value" VARCHAR(255) CONSTRAINT "Value" CHECK (length("Value") <= 255)
) WITHOUT ROWID;

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('address', 'PrimaryKey', 1, 'address_id', 0),
    ('address', 'i_callsign', 1, 'callsign', 1),
    ('address', 'i_ident', 1, 'IDENT', 0),
    ('status', 'PrimaryKey', 1, 'status_code', 0),
    ('event', 'PrimaryKey', 1, 'event_id', 0),
    ('event', 'i_time_stamp', 1, 'time_stamp', 0),
    ('dynamic_regroup', 'PrimaryKey', 1, 'group_id', 0),
    ('dynamic_regroup', 'PrimaryKey', 2, 'member_id', 0),
    ('dynamic_regroup', 'PrimaryKey', 3, 'pos', 0),
    ('dynamic_regroup', 'MemberPos', 1, 'member_id', 0),
    ('dynamic_regroup', 'MemberPos', 2, 'pos', 0),
    ('fleet', 'PrimaryKey', 1, 'fleet_name', 0),
    ('fleet', 'i_fleetbase', 1, 'prefix', 0),
    ('fleet', 'i_fleetbase', 2, 'base_ident', 0),
    ('user_profile', 'PrimaryKey', 1, 'profile_id', 0),
    ('user_profile', 'i_user', 1, 'UserName', 1),
    ('kyn_registry', 'PrimaryKey', 1, 'Key', 0),
    ('kyn_registry', 'i_key', 1, 'Key', 0);

{include stored_queries.sql}

INSERT INTO stored_query (name, table_name, sql) VALUES
('get_events', NULL,
'SELECT time_stamp, event_type, from_address, to_address, "desc" AS "Desc",
        CASE event_type WHEN 1 THEN ''status'' WHEN 2 THEN ''text'' WHEN 3 THEN ''call'' ELSE '''' END AS icon_key
 FROM event
 WHERE time_stamp >= (SELECT kyn_now() - :TimeVal * CASE :TimeUnit
                                                        WHEN ''n'' THEN 60000
                                                        WHEN ''h'' THEN 3600000
                                                        WHEN ''d'' THEN 86400000 END)
   AND (from_address IN (:MyAdr, :MyCallsign) OR to_address IN (:MyAdr, :MyCallsign))
 ORDER BY time_stamp, event_id'),

('unlog_user', NULL,
'UPDATE user_profile SET logged_on = 0 WHERE profile_id = :id');
