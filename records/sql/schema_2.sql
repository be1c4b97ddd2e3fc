-- The tables of an office. A line that ends with the name of a database is for that one alone; all others
-- are taken by both alike. A statement ends with a semicolon at the end of a line. Dates without a value
-- are open ends; flags are 0 or 1. An identity is what a query file can hold: 1 to 2147483647.
-- SQLite would give one to whoever brings none, as no server does, but not without its own number of a row.

CREATE TABLE vk_schema (
    version INTEGER NOT NULL
); -- PostgreSQL
) STRICT; -- SQLite

-- Kinds: 1 organisation, 2 separate branch, 3 private person. A branch belongs to an organisation, and
-- nobody else belongs to anybody: parent_kind lets the foreign key see to it.
CREATE TABLE person (
    id INTEGER NOT NULL PRIMARY KEY,
    kind INTEGER NOT NULL,
    inn TEXT NOT NULL,
    kpp TEXT NOT NULL,
    display_name TEXT NOT NULL,
    owner_name TEXT NOT NULL,
    is_main INTEGER NOT NULL,
    parent_id INTEGER,
    parent_kind INTEGER,
    UNIQUE (id, kind),
    FOREIGN KEY (parent_id, parent_kind) REFERENCES person (id, kind),
    CHECK (id BETWEEN 1 AND 2147483647),
    CHECK (kind IN (1, 2, 3)),
    CHECK (length(inn) <= 12),
    CHECK (length(kpp) <= 9),
    CHECK (length(display_name) <= 1000),
    CHECK (length(owner_name) <= 1000),
    CHECK (is_main IN (0, 1)),
    CHECK ((kind = 2 AND parent_id IS NOT NULL AND parent_kind = 1)
        OR (kind <> 2 AND parent_id IS NULL AND parent_kind IS NULL))
); -- PostgreSQL
) STRICT, WITHOUT ROWID; -- SQLite

CREATE INDEX person_by_name ON person (display_name, id);
CREATE INDEX person_by_parent ON person (parent_id);

CREATE TABLE acc_stream_type (
    id INTEGER NOT NULL PRIMARY KEY,
    name TEXT NOT NULL,
    icon_key TEXT NOT NULL,
    CHECK (length(name) <= 200),
    CHECK (length(icon_key) <= 50)
); -- PostgreSQL
) STRICT, WITHOUT ROWID; -- SQLite

CREATE TABLE acc_stream (
    id INTEGER NOT NULL PRIMARY KEY,
    person_id INTEGER NOT NULL REFERENCES person (id),
    type_id INTEGER NOT NULL REFERENCES acc_stream_type (id),
    display_name TEXT NOT NULL,
    kpp TEXT NOT NULL,
    office_codes TEXT NOT NULL,
    is_closed INTEGER NOT NULL,
    CHECK (id BETWEEN 1 AND 2147483647),
    CHECK (length(display_name) <= 1000),
    CHECK (length(kpp) <= 9),
    CHECK (length(office_codes) <= 200),
    CHECK (is_closed IN (0, 1))
); -- PostgreSQL
) STRICT, WITHOUT ROWID; -- SQLite

CREATE INDEX acc_stream_by_person ON acc_stream (person_id);
CREATE INDEX acc_stream_by_name ON acc_stream (display_name, id);

CREATE TABLE templ_type (
    id INTEGER NOT NULL PRIMARY KEY,
    knd TEXT NOT NULL,
    short_name TEXT NOT NULL,
    is_excluded INTEGER NOT NULL,
    icon_key TEXT NOT NULL,
    CHECK (id BETWEEN 1 AND 2147483647),
    CHECK (length(knd) <= 20),
    CHECK (length(short_name) <= 500),
    CHECK (is_excluded IN (0, 1)),
    CHECK (length(icon_key) <= 50)
); -- PostgreSQL
) STRICT, WITHOUT ROWID; -- SQLite

CREATE INDEX templ_type_by_name ON templ_type (short_name, id);

CREATE TABLE templ_type_name (
    templ_type_id INTEGER NOT NULL REFERENCES templ_type (id),
    name_order INTEGER NOT NULL,
    full_name TEXT NOT NULL,
    PRIMARY KEY (templ_type_id, name_order),
    CHECK (length(full_name) <= 4000)
); -- PostgreSQL
) STRICT; -- SQLite

CREATE TABLE templ_type_time (
    templ_type_id INTEGER NOT NULL REFERENCES templ_type (id),
    the_year INTEGER NOT NULL,
    month_id INTEGER NOT NULL,
    PRIMARY KEY (templ_type_id, the_year, month_id)
); -- PostgreSQL
) STRICT; -- SQLite

CREATE TABLE templ_type_category (
    templ_type_id INTEGER NOT NULL REFERENCES templ_type (id),
    category_id INTEGER NOT NULL,
    stream_type INTEGER NOT NULL,
    allowed_for_main INTEGER NOT NULL,
    allowed_for_branch INTEGER NOT NULL,
    PRIMARY KEY (templ_type_id, category_id, stream_type),
    CHECK (allowed_for_main IN (0, 1)),
    CHECK (allowed_for_branch IN (0, 1))
); -- PostgreSQL
) STRICT; -- SQLite

CREATE TABLE template (
    id INTEGER NOT NULL PRIMARY KEY,
    templ_type_id INTEGER NOT NULL REFERENCES templ_type (id),
    beg_date DATE, -- PostgreSQL
    end_date DATE, -- PostgreSQL
    beg_date TEXT CHECK (beg_date IS date(beg_date, '+0 days')), -- SQLite
    end_date TEXT CHECK (end_date IS date(end_date, '+0 days')), -- SQLite
    display_name TEXT NOT NULL,
    icon_key TEXT NOT NULL,
    CHECK (id BETWEEN 1 AND 2147483647),
    CHECK (beg_date IS NULL OR end_date IS NULL OR beg_date <= end_date),
    CHECK (length(display_name) <= 500),
    CHECK (length(icon_key) <= 50)
); -- PostgreSQL
) STRICT, WITHOUT ROWID; -- SQLite

CREATE INDEX template_by_type ON template (templ_type_id, beg_date);
