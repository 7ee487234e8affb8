-- Schema 2 of the database: indexes that hold all that the address directory lists, so that a hundred thousand entries are read in order
-- without a look-up in the table for each.

CREATE INDEX i_list_by_callsign ON address (kyn_fold(callsign), callsign, "IDENT", dynamic, "Type");
CREATE INDEX i_list_by_ident ON address ("IDENT", callsign, dynamic, "Type");
