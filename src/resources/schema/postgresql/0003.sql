-- Schema 3 of the database on a server: who stored a log record and from which console.

-- console_number counts the records of a console, and chain ties a record to the one before it. All are empty in records of older
-- programs, and record_id in those that come from a file.
ALTER TABLE event ALTER COLUMN record_id DROP NOT NULL;
ALTER TABLE event ADD COLUMN console varchar(64);
ALTER TABLE event ADD COLUMN operator varchar(64);
ALTER TABLE event ADD COLUMN console_number bigint;
ALTER TABLE event ADD COLUMN chain text;
GRANT INSERT (console, operator, console_number, chain) ON event TO {users};

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('event', 'i_record_id', 1, 'record_id', false);
