-- Schema 3 of the database: a count of the changes to each table that consoles show, and the regroup commands that await the radio's
-- answer.

-- Log records are not counted: they do not change what the lists show.
CREATE TABLE change_count (
    table_name VARCHAR(64) PRIMARY KEY NOT NULL,
    changes INTEGER NOT NULL DEFAULT 0
) WITHOUT ROWID;
INSERT INTO change_count (table_name) VALUES
    ('address'), ('status'), ('dynamic_regroup'), ('fleet'), ('user_profile'), ('kyn_registry');

CREATE TRIGGER address_insert_counted AFTER INSERT ON address
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'address';
END;
CREATE TRIGGER address_update_counted AFTER UPDATE ON address
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'address';
END;
CREATE TRIGGER address_delete_counted AFTER DELETE ON address
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'address';
END;
CREATE TRIGGER status_insert_counted AFTER INSERT ON status
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'status';
END;
CREATE TRIGGER status_update_counted AFTER UPDATE ON status
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'status';
END;
CREATE TRIGGER status_delete_counted AFTER DELETE ON status
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'status';
END;
CREATE TRIGGER dynamic_regroup_insert_counted AFTER INSERT ON dynamic_regroup
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'dynamic_regroup';
END;
CREATE TRIGGER dynamic_regroup_update_counted AFTER UPDATE ON dynamic_regroup
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'dynamic_regroup';
END;
CREATE TRIGGER dynamic_regroup_delete_counted AFTER DELETE ON dynamic_regroup
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'dynamic_regroup';
END;
CREATE TRIGGER fleet_insert_counted AFTER INSERT ON fleet
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'fleet';
END;
CREATE TRIGGER fleet_update_counted AFTER UPDATE ON fleet
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'fleet';
END;
CREATE TRIGGER fleet_delete_counted AFTER DELETE ON fleet
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'fleet';
END;
CREATE TRIGGER user_profile_insert_counted AFTER INSERT ON user_profile
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'user_profile';
END;
CREATE TRIGGER user_profile_update_counted AFTER UPDATE ON user_profile
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'user_profile';
END;
CREATE TRIGGER user_profile_delete_counted AFTER DELETE ON user_profile
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'user_profile';
END;
CREATE TRIGGER kyn_registry_insert_counted AFTER INSERT ON kyn_registry
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'kyn_registry';
END;
CREATE TRIGGER kyn_registry_update_counted AFTER UPDATE ON kyn_registry
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'kyn_registry';
END;
CREATE TRIGGER kyn_registry_delete_counted AFTER DELETE ON kyn_registry
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'kyn_registry';
END;

-- A command is written with the right to regroup, and while it stands its owner may store what the radio confirms. group_id is empty
-- when one member leaves its group, member_id when a whole group is dissolved.
CREATE TABLE regroup_request (
    request_id VARCHAR(36) PRIMARY KEY NOT NULL,
    "UserName" VARCHAR(64) NOT NULL,
    time_stamp DATETIME NOT NULL CONSTRAINT time_stamp CHECK (typeof(time_stamp) = 'integer'),
    group_id INTEGER,
    member_id INTEGER CONSTRAINT member_id CHECK (member_id IS NOT NULL OR group_id IS NOT NULL),
    pos SMALLINT NOT NULL CONSTRAINT pos CHECK (typeof(pos) = 'integer' AND pos BETWEEN 0 AND 255)
) WITHOUT ROWID;

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('regroup_request', 'PrimaryKey', 1, 'request_id', 0);

-- The second takes along what a console that ended in the middle has left.
INSERT INTO stored_query (name, table_name, sql) VALUES
('add_regroup_request', NULL,
'INSERT INTO regroup_request (request_id, "UserName", time_stamp, group_id, member_id, pos)
 VALUES (:id, kyn_user(), kyn_now(), nullif(:gi, 0), nullif(:mi, 0), :p)'),

('drop_regroup_request', NULL,
'DELETE FROM regroup_request
 WHERE request_id = :id
    OR (kyn_fold("UserName") = kyn_fold(kyn_user()) AND time_stamp < kyn_now() - 3600000)');
