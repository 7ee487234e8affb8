-- Schema 6 of the database: what waits for a person, at every console, and which statuses are emergencies.

ALTER TABLE status ADD COLUMN emergency BOOLEAN NOT NULL DEFAULT 0 CONSTRAINT emergency CHECK (emergency IN (0, 1));

-- What waits: one entry for each caller and kind, whichever console's radio has heard it, until it is dealt with. Kind: 1 emergency,
-- 2 missed call, 3 call for a call-back, 4 message that failed. An entry has the number of the act that has opened it. message_type: 0
-- nothing to be sent again, 1 status, 2 text, 3 text in eight bits.
CREATE TABLE attention (
    caller VARCHAR(255) NOT NULL CONSTRAINT caller CHECK (length(caller) <= 255),
    kind SMALLINT NOT NULL CONSTRAINT kind CHECK (kind BETWEEN 1 AND 4),
    entry_id VARCHAR(36) NOT NULL,
    what TEXT NOT NULL DEFAULT '',
    call_back TEXT NOT NULL DEFAULT '',
    message_type SMALLINT NOT NULL DEFAULT 0 CONSTRAINT message_type CHECK (message_type BETWEEN 0 AND 3),
    message TEXT NOT NULL DEFAULT '',
    since DATETIME NOT NULL,
    last DATETIME NOT NULL,
    last_console VARCHAR(64) NOT NULL DEFAULT '',
    times INTEGER NOT NULL DEFAULT 1,
    taken_by VARCHAR(64),
    taken_on VARCHAR(64),
    taken_at DATETIME,
    taken_away BOOLEAN NOT NULL DEFAULT 0 CONSTRAINT taken_away CHECK (taken_away IN (0, 1)),
    PRIMARY KEY (caller, kind)
) WITHOUT ROWID;

-- What has become of entries: 1 heard, 2 taken, 3 done. Acts are added and never touched again; one given twice is stored once. away:
-- the server was away, so that nobody else could know.
CREATE TABLE attention_act (
    act_id VARCHAR(36) PRIMARY KEY NOT NULL,
    entry_id VARCHAR(36) NOT NULL,
    act SMALLINT NOT NULL CONSTRAINT act CHECK (act BETWEEN 1 AND 3),
    caller VARCHAR(255) NOT NULL,
    kind SMALLINT NOT NULL,
    what TEXT NOT NULL DEFAULT '',
    time_stamp DATETIME NOT NULL,
    operator VARCHAR(64),
    console VARCHAR(64),
    away BOOLEAN NOT NULL DEFAULT 0
) WITHOUT ROWID;
CREATE INDEX i_act_time ON attention_act (time_stamp);
CREATE TRIGGER attention_act_no_update BEFORE UPDATE ON attention_act
BEGIN
    SELECT RAISE(ABORT, 'acts can only be appended');
END;
CREATE TRIGGER attention_act_no_delete BEFORE DELETE ON attention_act
BEGIN
    SELECT RAISE(ABORT, 'acts can only be appended');
END;

INSERT OR IGNORE INTO change_count (table_name) VALUES ('attention');
CREATE TRIGGER attention_insert_counted AFTER INSERT ON attention
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'attention';
END;
CREATE TRIGGER attention_update_counted AFTER UPDATE ON attention
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'attention';
END;
CREATE TRIGGER attention_delete_counted AFTER DELETE ON attention
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'attention';
END;

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('attention', 'PrimaryKey', 1, 'caller', 0),
    ('attention', 'PrimaryKey', 2, 'kind', 0),
    ('attention_act', 'PrimaryKey', 1, 'act_id', 0);
