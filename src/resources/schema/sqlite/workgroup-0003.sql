-- Schema 3 of the workgroup file: how often each table was changed. A console that shows accounts compares it with its own changes.

CREATE TABLE change_count (
    table_name VARCHAR(64) PRIMARY KEY NOT NULL,
    changes INTEGER NOT NULL DEFAULT 0
) WITHOUT ROWID;
INSERT INTO change_count (table_name) VALUES
    ('account'), ('account_group'), ('membership');

CREATE TRIGGER account_insert_counted AFTER INSERT ON account
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'account';
END;
CREATE TRIGGER account_update_counted AFTER UPDATE ON account
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'account';
END;
CREATE TRIGGER account_delete_counted AFTER DELETE ON account
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'account';
END;
CREATE TRIGGER account_group_insert_counted AFTER INSERT ON account_group
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'account_group';
END;
CREATE TRIGGER account_group_update_counted AFTER UPDATE ON account_group
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'account_group';
END;
CREATE TRIGGER account_group_delete_counted AFTER DELETE ON account_group
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'account_group';
END;
CREATE TRIGGER membership_insert_counted AFTER INSERT ON membership
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'membership';
END;
CREATE TRIGGER membership_update_counted AFTER UPDATE ON membership
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'membership';
END;
CREATE TRIGGER membership_delete_counted AFTER DELETE ON membership
BEGIN
    UPDATE change_count SET changes = changes + 1 WHERE table_name = 'membership';
END;
