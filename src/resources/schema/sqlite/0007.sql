-- Schema 7 of the database: who has moved which radio from which dynamic group into which, and when.

-- Acts are added and never touched again; one given twice is stored once. A command that dissolves a group is an act for each radio that
-- was in it. The callsigns are those of that time; no group: the radio was in none, or has left.
CREATE TABLE regroup_act (
    act_id VARCHAR(36) NOT NULL,
    member_id INTEGER NOT NULL,
    member VARCHAR(14) NOT NULL,
    old_group_id INTEGER,
    old_group VARCHAR(14),
    group_id INTEGER,
    new_group VARCHAR(14),
    pos SMALLINT NOT NULL CONSTRAINT pos CHECK (typeof(pos) = 'integer' AND pos BETWEEN 0 AND 255),
    time_stamp DATETIME NOT NULL CONSTRAINT time_stamp CHECK (typeof(time_stamp) = 'integer'),
    operator VARCHAR(64),
    console VARCHAR(64),
    PRIMARY KEY (act_id, member_id)
) WITHOUT ROWID;
CREATE INDEX i_regroup_act_member ON regroup_act (member_id, pos);
CREATE INDEX i_regroup_act_time ON regroup_act (time_stamp);
CREATE TRIGGER regroup_act_no_update BEFORE UPDATE ON regroup_act
BEGIN
    SELECT RAISE(ABORT, 'acts can only be appended');
END;
CREATE TRIGGER regroup_act_no_delete BEFORE DELETE ON regroup_act
BEGIN
    SELECT RAISE(ABORT, 'acts can only be appended');
END;

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('regroup_act', 'PrimaryKey', 1, 'act_id', 0),
    ('regroup_act', 'PrimaryKey', 2, 'member_id', 0);
