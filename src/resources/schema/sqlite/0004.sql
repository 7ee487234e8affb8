-- Schema 4 of the database: who stored a log record, from which console, and a number that tells it from all others.

-- record_id is made once by the console that adds the record, so that one given twice is stored once; console_number counts the
-- records of a console, and chain ties a record to the one before it. All are empty in records of older programs. No constraints: they
-- would be tried on every record that is there.
ALTER TABLE event ADD COLUMN record_id VARCHAR(36);
ALTER TABLE event ADD COLUMN console VARCHAR(64);
ALTER TABLE event ADD COLUMN operator VARCHAR(64);
ALTER TABLE event ADD COLUMN console_number INTEGER;
ALTER TABLE event ADD COLUMN chain TEXT;
CREATE UNIQUE INDEX i_record_id ON event (record_id) WHERE record_id IS NOT NULL;

-- "INSERT OR REPLACE" would delete the record with the same number. The text is what the index alone says.
CREATE TRIGGER event_once BEFORE INSERT ON event
WHEN EXISTS (SELECT 1 FROM event WHERE record_id = NEW.record_id)
BEGIN
    SELECT RAISE(ABORT, 'UNIQUE constraint failed: event.record_id');
END;

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('event', 'i_record_id', 1, 'record_id', 0);
