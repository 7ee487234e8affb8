-- Schema 5 of the database on a server: what waits for a person, at every console, and which statuses are emergencies.

ALTER TABLE status ADD COLUMN emergency boolean NOT NULL DEFAULT false;

-- What waits: one entry for each caller and kind, whichever console's radio has heard it, until it is dealt with. Kind: 1 emergency,
-- 2 missed call, 3 call for a call-back, 4 message that failed. An entry has the number of the act that has opened it. message_type: 0
-- nothing to be sent again, 1 status, 2 text, 3 text in eight bits.
CREATE TABLE attention (
    caller varchar(255) NOT NULL,
    kind smallint NOT NULL CONSTRAINT kind CHECK (kind BETWEEN 1 AND 4),
    entry_id varchar(36) NOT NULL,
    what text NOT NULL DEFAULT '',
    call_back text NOT NULL DEFAULT '',
    message_type smallint NOT NULL DEFAULT 0 CONSTRAINT message_type CHECK (message_type BETWEEN 0 AND 3),
    message text NOT NULL DEFAULT '',
    since timestamptz(3) NOT NULL,
    last timestamptz(3) NOT NULL,
    last_console varchar(64) NOT NULL DEFAULT '',
    times integer NOT NULL DEFAULT 1,
    taken_by varchar(64),
    taken_on varchar(64),
    taken_at timestamptz(3),
    taken_away boolean NOT NULL DEFAULT false,
    PRIMARY KEY (caller, kind)
);

-- What has become of entries: 1 heard, 2 taken, 3 done. Acts are added and never touched again; one given twice is stored once. away:
-- the server was away, so that nobody else could know.
CREATE TABLE attention_act (
    act_id varchar(36) PRIMARY KEY,
    entry_id varchar(36) NOT NULL,
    act smallint NOT NULL CONSTRAINT act CHECK (act BETWEEN 1 AND 3),
    caller varchar(255) NOT NULL,
    kind smallint NOT NULL,
    what text NOT NULL DEFAULT '',
    time_stamp timestamptz(3) NOT NULL,
    operator varchar(64),
    console varchar(64),
    away boolean NOT NULL DEFAULT false
);
CREATE INDEX i_act_time ON attention_act (time_stamp);

CREATE TRIGGER a_share_changes BEFORE INSERT OR UPDATE OR DELETE ON attention
FOR EACH STATEMENT EXECUTE FUNCTION kyn_share_changes();
CREATE TRIGGER tell_change AFTER INSERT OR UPDATE OR DELETE ON attention
FOR EACH STATEMENT EXECUTE FUNCTION kyn_tell_change();

GRANT SELECT, INSERT, UPDATE, DELETE ON attention TO {users};
GRANT SELECT, INSERT ON attention_act TO {users};

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('attention', 'PrimaryKey', 1, 'caller', false),
    ('attention', 'PrimaryKey', 2, 'kind', false),
    ('attention_act', 'PrimaryKey', 1, 'act_id', false);
