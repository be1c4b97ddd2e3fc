-- From the first version on a server to the second: identities that a query file can hold, and names that
-- are there. SQLite copies its tables into those of schema_2.sql instead, as it changes no column.

UPDATE templ_type_name SET full_name = '' WHERE full_name IS NULL;

ALTER TABLE person
    ALTER id TYPE INTEGER, ALTER kind TYPE INTEGER, ALTER inn TYPE TEXT, ALTER kpp TYPE TEXT,
    ALTER display_name TYPE TEXT, ALTER owner_name TYPE TEXT, ALTER is_main TYPE INTEGER,
    ALTER parent_id TYPE INTEGER, ALTER parent_kind TYPE INTEGER,
    DROP CONSTRAINT IF EXISTS person_id_check, ADD CHECK (id BETWEEN 1 AND 2147483647),
    ADD CHECK (length(inn) <= 12), ADD CHECK (length(kpp) <= 9),
    ADD CHECK (length(display_name) <= 1000), ADD CHECK (length(owner_name) <= 1000);

ALTER TABLE acc_stream_type
    ALTER id TYPE INTEGER, ALTER name TYPE TEXT, ALTER icon_key TYPE TEXT,
    ADD CHECK (length(name) <= 200), ADD CHECK (length(icon_key) <= 50);

ALTER TABLE acc_stream
    ALTER id TYPE INTEGER, ALTER person_id TYPE INTEGER, ALTER type_id TYPE INTEGER,
    ALTER display_name TYPE TEXT, ALTER kpp TYPE TEXT, ALTER office_codes TYPE TEXT,
    ALTER is_closed TYPE INTEGER,
    DROP CONSTRAINT IF EXISTS acc_stream_id_check, ADD CHECK (id BETWEEN 1 AND 2147483647),
    ADD CHECK (length(display_name) <= 1000), ADD CHECK (length(kpp) <= 9),
    ADD CHECK (length(office_codes) <= 200);

ALTER TABLE templ_type
    ALTER id TYPE INTEGER, ALTER knd TYPE TEXT, ALTER short_name TYPE TEXT,
    ALTER is_excluded TYPE INTEGER, ALTER icon_key TYPE TEXT,
    DROP CONSTRAINT IF EXISTS templ_type_id_check, ADD CHECK (id BETWEEN 1 AND 2147483647),
    ADD CHECK (length(knd) <= 20), ADD CHECK (length(short_name) <= 500),
    ADD CHECK (length(icon_key) <= 50);

ALTER TABLE templ_type_name
    ALTER templ_type_id TYPE INTEGER, ALTER name_order TYPE INTEGER, ALTER full_name TYPE TEXT,
    ALTER full_name SET NOT NULL, ADD CHECK (length(full_name) <= 4000);

ALTER TABLE templ_type_time
    ALTER templ_type_id TYPE INTEGER, ALTER the_year TYPE INTEGER, ALTER month_id TYPE INTEGER;

ALTER TABLE templ_type_category
    ALTER templ_type_id TYPE INTEGER, ALTER category_id TYPE INTEGER, ALTER stream_type TYPE INTEGER,
    ALTER allowed_for_main TYPE INTEGER, ALTER allowed_for_branch TYPE INTEGER,
    ADD CHECK (allowed_for_main IN (0, 1)), ADD CHECK (allowed_for_branch IN (0, 1));

ALTER TABLE template
    ALTER id TYPE INTEGER, ALTER templ_type_id TYPE INTEGER, ALTER display_name TYPE TEXT,
    ALTER icon_key TYPE TEXT,
    DROP CONSTRAINT IF EXISTS template_id_check, ADD CHECK (id BETWEEN 1 AND 2147483647),
    ADD CHECK (length(display_name) <= 500), ADD CHECK (length(icon_key) <= 50);
