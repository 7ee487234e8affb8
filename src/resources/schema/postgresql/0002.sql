-- Schema 2 of the database on a server: the regroup commands that await the radio's answer.

-- A command is written with the right to regroup, and for an hour at most its owner may store what the radio confirms, even when right
-- or account are gone meanwhile. group_id is empty when one member leaves its group, member_id when a whole group is dissolved. The
-- owner is the role that has logged on, since the account may go.
CREATE TABLE regroup_request (
    request_id uuid PRIMARY KEY,
    role_name name NOT NULL DEFAULT session_user,
    time_stamp timestamptz(3) NOT NULL DEFAULT now(),
    group_id integer,
    member_id integer CONSTRAINT member_id CHECK (member_id IS NOT NULL OR group_id IS NOT NULL),
    pos smallint NOT NULL CONSTRAINT pos CHECK (pos BETWEEN 0 AND 255)
);

CREATE FUNCTION kyn_may_regroup() RETURNS boolean
LANGUAGE sql STABLE
RETURN kyn_is_admin() OR EXISTS (SELECT 1 FROM user_profile
                                 WHERE kyn_fold("UserName") = kyn_fold(kyn_user()) AND allow_dr);

CREATE FUNCTION kyn_has_request(owner name) RETURNS boolean
LANGUAGE sql STABLE
RETURN EXISTS (SELECT 1 FROM regroup_request
               WHERE role_name = owner AND time_stamp > now() - interval '1 hour');

-- The parts of a change; empty ones as in regroup_request.
CREATE FUNCTION kyn_is_requested(wanted_group integer, wanted_member integer, wanted_pos smallint) RETURNS boolean
LANGUAGE sql STABLE
RETURN EXISTS (SELECT 1 FROM regroup_request
               WHERE role_name = session_user AND time_stamp > now() - interval '1 hour' AND pos = wanted_pos
                 AND group_id IS NOT DISTINCT FROM wanted_group AND member_id IS NOT DISTINCT FROM wanted_member);

CREATE FUNCTION kyn_guard_request() RETURNS trigger
LANGUAGE plpgsql SET search_path = kyn, pg_temp AS $$
BEGIN
    IF TG_OP = 'INSERT' THEN
        IF NOT kyn_may_regroup() THEN
            PERFORM kyn_refuse('NotPermitted');
        END IF;
        RETURN NEW;
    END IF;
    IF OLD.role_name <> session_user AND NOT kyn_is_admin() THEN
        PERFORM kyn_refuse('NotPermitted');
    END IF;
    RETURN OLD;
END $$;
CREATE TRIGGER a_share_changes BEFORE INSERT OR DELETE ON regroup_request
FOR EACH STATEMENT EXECUTE FUNCTION kyn_share_changes();
CREATE TRIGGER guard_request BEFORE INSERT OR DELETE ON regroup_request
FOR EACH ROW EXECUTE FUNCTION kyn_guard_request();

-- An account that was deleted while its command was under way keeps its group until the command has ended.
CREATE FUNCTION kyn_end_request() RETURNS trigger
LANGUAGE plpgsql SECURITY DEFINER SET search_path = kyn, pg_temp AS $$
BEGIN
    IF NOT EXISTS (SELECT 1 FROM account WHERE role_name = OLD.role_name) AND NOT kyn_has_request(OLD.role_name)
       AND EXISTS (SELECT 1 FROM pg_roles WHERE rolname = OLD.role_name) THEN
        EXECUTE format('REVOKE %I FROM %I', kyn_group_role('Users'), OLD.role_name);
    END IF;
    RETURN NULL;
END $$;
CREATE TRIGGER end_request AFTER DELETE ON regroup_request
FOR EACH ROW EXECUTE FUNCTION kyn_end_request();

-- Whoever has neither the right nor a command is refused whatever the change would meet; a command covers its own rows.
CREATE OR REPLACE FUNCTION kyn_guard_regrouping() RETURNS trigger
LANGUAGE plpgsql SET search_path = kyn, pg_temp AS $$
BEGIN
    IF NOT kyn_may_regroup() AND NOT kyn_has_request(session_user) THEN
        PERFORM kyn_refuse('NotPermitted');
    END IF;
    RETURN NULL;
END $$;

CREATE FUNCTION kyn_guard_regrouped_row() RETURNS trigger
LANGUAGE plpgsql SET search_path = kyn, pg_temp AS $$
DECLARE
    permitted boolean := kyn_may_regroup();
BEGIN
    IF TG_OP = 'DELETE' THEN
        permitted := permitted OR kyn_is_requested(NULL, OLD.member_id, OLD.pos)
                               OR kyn_is_requested(OLD.group_id, NULL, OLD.pos);
    ELSE
        permitted := permitted OR kyn_is_requested(NEW.group_id, NEW.member_id, NEW.pos);
        IF TG_OP = 'UPDATE' THEN
            permitted := permitted AND (kyn_may_regroup() OR (OLD.member_id = NEW.member_id AND OLD.pos = NEW.pos));
        END IF;
    END IF;
    IF NOT permitted THEN
        PERFORM kyn_refuse('NotPermitted');
    END IF;
    IF TG_OP = 'DELETE' THEN
        RETURN OLD;
    END IF;
    RETURN NEW;
END $$;
CREATE TRIGGER guard_regrouped_row BEFORE INSERT OR UPDATE OR DELETE ON dynamic_regroup
FOR EACH ROW EXECUTE FUNCTION kyn_guard_regrouped_row();

CREATE OR REPLACE FUNCTION kyn_add_account(name text, identifier text, verifier text) RETURNS void
LANGUAGE plpgsql SECURITY DEFINER SET search_path = kyn, pg_temp AS $$
DECLARE
    role name := kyn_role_name(name);
BEGIN
    PERFORM kyn_require_admin();
    PERFORM kyn_require_verifier(verifier);
    IF EXISTS (SELECT 1 FROM account WHERE role_name = role)
       OR EXISTS (SELECT 1 FROM pg_roles WHERE rolname = role AND rolcanlogin) THEN
        PERFORM kyn_refuse('UserExists');
    END IF;
    DELETE FROM regroup_request WHERE role_name = role;
    EXECUTE format('DROP ROLE IF EXISTS %I', role); -- of an account that was deleted while its session was open
    INSERT INTO account (user_name, role_name, pid) VALUES (name, role, identifier);
    EXECUTE format('CREATE ROLE %I LOGIN NOSUPERUSER NOCREATEDB NOCREATEROLE NOREPLICATION NOBYPASSRLS PASSWORD %L',
                   role, verifier);
END $$;

CREATE OR REPLACE FUNCTION kyn_drop_account(name text) RETURNS void
LANGUAGE plpgsql SECURITY DEFINER SET search_path = kyn, pg_temp AS $$
DECLARE
    id integer;
    role name;
BEGIN
    PERFORM kyn_require_admin();
    id := kyn_account_id(name);
    PERFORM kyn_require_other_admin(id);
    DELETE FROM account WHERE account_id = id RETURNING role_name INTO role;
    IF role <> session_user AND NOT kyn_has_request(role) THEN
        EXECUTE format('DROP ROLE IF EXISTS %I', role);
        RETURN;
    END IF;
    -- The server keeps the role of its own session, and what the radio confirms is still to be stored.
    EXECUTE format('ALTER ROLE %I NOLOGIN PASSWORD NULL', role);
    EXECUTE format('REVOKE %I FROM %I', kyn_group_role('Admins'), role);
    IF NOT kyn_has_request(role) THEN
        EXECUTE format('REVOKE %I FROM %I', kyn_group_role('Users'), role);
    END IF;
END $$;

REVOKE ALL ON ALL FUNCTIONS IN SCHEMA kyn FROM PUBLIC;
GRANT EXECUTE ON ALL FUNCTIONS IN SCHEMA kyn TO {users};
GRANT SELECT, DELETE ON regroup_request TO {users};
GRANT INSERT (request_id, group_id, member_id, pos) ON regroup_request TO {users};

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('regroup_request', 'PrimaryKey', 1, 'request_id', false);

-- The second takes along what a console that ended in the middle has left.
INSERT INTO stored_query (name, table_name, sql) VALUES
('add_regroup_request', NULL,
'INSERT INTO regroup_request (request_id, group_id, member_id, pos)
 VALUES (:id, nullif(:gi, 0), nullif(:mi, 0), :p)'),

('drop_regroup_request', NULL,
'DELETE FROM regroup_request
 WHERE request_id = :id OR (role_name = session_user AND time_stamp < now() - interval ''1 hour'')');
