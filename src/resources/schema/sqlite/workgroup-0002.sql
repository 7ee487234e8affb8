-- Schema 2 of the workgroup file: a group for those who are no administrators, since the user manager gives every account one besides
-- "Users".

INSERT OR IGNORE INTO account_group (group_name) VALUES ('Operators');
