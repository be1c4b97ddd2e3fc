-- The tables of an office. Every statement is taken by SQLite and by PostgreSQL alike, and ends with a
-- semicolon at the end of a line. Dates without a value are open ends; flags are 0 or 1.

CREATE TABLE vk_schema (
    version INTEGER NOT NULL
);

-- Kinds: 1 organisation, 2 separate branch, 3 private person. A branch belongs to an organisation, and
-- nobody else belongs to anybody: parent_kind lets the foreign key see to it.
CREATE TABLE person (
    id BIGINT NOT NULL PRIMARY KEY,
    kind SMALLINT NOT NULL,
    inn VARCHAR(12) NOT NULL,
    kpp VARCHAR(9) NOT NULL,
    display_name VARCHAR(1000) NOT NULL,
    owner_name VARCHAR(1000) NOT NULL,
    is_main SMALLINT NOT NULL,
    parent_id BIGINT,
    parent_kind SMALLINT,
    UNIQUE (id, kind),
    FOREIGN KEY (parent_id, parent_kind) REFERENCES person (id, kind),
    CHECK (id > 0),
    CHECK (kind IN (1, 2, 3)),
    CHECK (is_main IN (0, 1)),
    CHECK ((kind = 2 AND parent_id IS NOT NULL AND parent_kind = 1)
        OR (kind <> 2 AND parent_id IS NULL AND parent_kind IS NULL))
);

CREATE INDEX person_by_name ON person (display_name, id);
CREATE INDEX person_by_parent ON person (parent_id);

CREATE TABLE acc_stream_type (
    id SMALLINT NOT NULL PRIMARY KEY,
    name VARCHAR(200) NOT NULL,
    icon_key VARCHAR(50) NOT NULL
);

CREATE TABLE acc_stream (
    id BIGINT NOT NULL PRIMARY KEY,
    person_id BIGINT NOT NULL REFERENCES person (id),
    type_id SMALLINT NOT NULL REFERENCES acc_stream_type (id),
    display_name VARCHAR(1000) NOT NULL,
    kpp VARCHAR(9) NOT NULL,
    office_codes VARCHAR(200) NOT NULL,
    is_closed SMALLINT NOT NULL,
    CHECK (id > 0),
    CHECK (is_closed IN (0, 1))
);

CREATE INDEX acc_stream_by_person ON acc_stream (person_id);
CREATE INDEX acc_stream_by_name ON acc_stream (display_name, id);

CREATE TABLE templ_type (
    id BIGINT NOT NULL PRIMARY KEY,
    knd VARCHAR(20) NOT NULL,
    short_name VARCHAR(500) NOT NULL,
    is_excluded SMALLINT NOT NULL,
    icon_key VARCHAR(50) NOT NULL,
    CHECK (id > 0),
    CHECK (is_excluded IN (0, 1))
);

CREATE INDEX templ_type_by_name ON templ_type (short_name, id);

CREATE TABLE templ_type_name (
    templ_type_id BIGINT NOT NULL REFERENCES templ_type (id),
    name_order SMALLINT NOT NULL,
    full_name VARCHAR(4000),
    PRIMARY KEY (templ_type_id, name_order)
);

CREATE TABLE templ_type_time (
    templ_type_id BIGINT NOT NULL REFERENCES templ_type (id),
    the_year SMALLINT NOT NULL,
    month_id SMALLINT NOT NULL,
    PRIMARY KEY (templ_type_id, the_year, month_id)
);

CREATE TABLE templ_type_category (
    templ_type_id BIGINT NOT NULL REFERENCES templ_type (id),
    category_id SMALLINT NOT NULL,
    stream_type SMALLINT NOT NULL,
    allowed_for_main SMALLINT NOT NULL,
    allowed_for_branch SMALLINT NOT NULL,
    PRIMARY KEY (templ_type_id, category_id, stream_type)
);

CREATE TABLE template (
    id BIGINT NOT NULL PRIMARY KEY,
    templ_type_id BIGINT NOT NULL REFERENCES templ_type (id),
    beg_date DATE,
    end_date DATE,
    display_name VARCHAR(500) NOT NULL,
    icon_key VARCHAR(50) NOT NULL,
    CHECK (id > 0),
    CHECK (beg_date IS NULL OR end_date IS NULL OR beg_date <= end_date)
);

CREATE INDEX template_by_type ON template (templ_type_id, beg_date);
