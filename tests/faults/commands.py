"""What is interrupted: commands of veltorkynctl, each of which has happened wholly or not at all."""

import csv

from place import ADMINISTRATOR, OLD_SCHEMA, OPERATOR, RADIOS, RECORDS, Broken

NEW_PASSWORD = "oliver-anew"
IMPORTED = 40


class Command:
    """begin is the state of the site that it begins with; state() says whether it has happened."""

    begin = "made"
    again = None  # how a second attempt after the whole first ends, if not as the first does

    def __init__(self, site):
        self.site = site

    def run(self, **shim):
        return self.site.tool(self.words, *self.lines, **shim)


class Import(Command):
    words, lines = None, ADMINISTRATOR[1:]

    def __init__(self, site):
        super().__init__(site)
        self.words = f"directory import {{}} {site.table('more', 'Van', IMPORTED, 6000)} --as Anna"

    def state(self):
        count = self.site.rows("SELECT count(*) FROM address")[0][0]
        if count not in (RADIOS, RADIOS + IMPORTED):
            raise Broken(f"{count - RADIOS} of {IMPORTED} entries are there")
        return count > RADIOS


class Password(Command):
    words, lines = "user password {} Oliver --as Anna", (ADMINISTRATOR[1], NEW_PASSWORD)

    def state(self):
        old, new = (self.site.tool("log show {} --last 1 --as Oliver", password).code == 0
                    for password in (OPERATOR[1], NEW_PASSWORD))
        if old == new:
            raise Broken(f"the {'old password and the new' if old else 'neither the old password nor the new'} one lets in")
        return new


class NewAccount(Command):
    words, lines = "user add {} Ute --as Anna --callsign Base --allow-regrouping", (ADMINISTRATOR[1], "ute-demo")
    again = 1

    def state(self):
        accounts = self.site.database.with_suffix(".kynw")
        parts = [self.site.rows(sql, file)[0][0] for sql, file in (
            ("SELECT count(*) FROM account WHERE user_name = 'Ute'", accounts),
            ("SELECT count(*) FROM account JOIN membership USING (account_id) WHERE user_name = 'Ute'", accounts),
            ("SELECT count(*) FROM user_profile WHERE \"UserName\" = 'Ute' AND allow_dr = 1", self.site.database))]
        if len(set(parts)) > 1:
            raise Broken(f"half an account: account, membership, profile are {parts}")
        return parts[0] == 1


class Migration(Command):
    words, lines, begin = "db migrate {}", (), "old"

    def state(self):
        for table, count in (("address", RADIOS), ("event", RECORDS)):
            if self.site.rows(f"SELECT count(*) FROM {table}")[0][0] != count:
                raise Broken(f"not all of {table} is there")
        version = int(self.site.rows("SELECT value FROM file_info WHERE name = 'schema_version'")[0][0])
        columns = len(self.site.rows("SELECT name FROM pragma_table_info('event') WHERE name = 'direction'"))
        if (version > OLD_SCHEMA) != (columns == 1):
            raise Broken(f"schema {version} with half of its tables")
        return version > OLD_SCHEMA


class Backup(Command):
    lines = ADMINISTRATOR[1:]

    def __init__(self, site):
        super().__init__(site)
        self.words = f"db backup {{}} {site.out} --as Anna"

    def state(self):
        """Any that has got its name is whole."""
        named = [one for one in self.site.out.iterdir() if one.is_dir() and one.name.startswith("site-")]
        for folder in named:
            made = self.site.tool(f"db restore {folder} {self.site.work / 'restored.kyndb'} --as Anna", ADMINISTRATOR[1])
            if made.code != 0 or self.site.rows("SELECT count(*) FROM event", self.site.work / "restored.kyndb")[0][0] < RECORDS:
                raise Broken(f"a backup that is none: {made}")
            for file in self.site.work.glob("restored.*"):
                file.unlink()
        return bool(named)


class Export(Command):
    lines, again = ADMINISTRATOR[1:], 1

    def __init__(self, site):
        super().__init__(site)
        self.file = site.out / "log.csv"
        self.words = f"log export {{}} {self.file} --as Anna"

    def state(self):
        if not self.file.exists():
            return False
        with open(self.file, encoding="utf-8", newline="") as file:
            rows = list(csv.reader(file))
        if len(rows) != RECORDS + 1 or {len(row) for row in rows} != {len(rows[0])}:
            raise Broken(f"an export of {len(rows) - 1} of {RECORDS} records")
        return True



ALL = {"import": Import, "password": Password, "account": NewAccount, "migration": Migration, "backup": Backup, "export": Export}

