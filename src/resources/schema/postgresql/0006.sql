-- Schema 6 of the database on a server: who has moved which radio from which dynamic group into which, and when.

-- Acts are added and never touched again; one given twice is stored once. A command that dissolves a group is an act for each radio that
-- was in it. The callsigns are those of that time; no group: the radio was in none, or has left.
CREATE TABLE regroup_act (
    act_id varchar(36) NOT NULL,
    member_id integer NOT NULL,
    member varchar(14) NOT NULL,
    old_group_id integer,
    old_group varchar(14),
    group_id integer,
    new_group varchar(14),
    pos smallint NOT NULL CONSTRAINT pos CHECK (pos BETWEEN 0 AND 255),
    time_stamp timestamptz(3) NOT NULL,
    operator varchar(64),
    console varchar(64),
    PRIMARY KEY (act_id, member_id)
);
CREATE INDEX i_regroup_act_member ON regroup_act (member_id, pos);
CREATE INDEX i_regroup_act_time ON regroup_act (time_stamp);

GRANT SELECT, INSERT ON regroup_act TO {users};

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('regroup_act', 'PrimaryKey', 1, 'act_id', false),
    ('regroup_act', 'PrimaryKey', 2, 'member_id', false);
