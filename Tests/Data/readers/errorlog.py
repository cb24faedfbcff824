"""Prints what an error log holds: its tables with their columns, then its entries without time."""
import sqlite3
import sys

store = sqlite3.connect("file:" + sys.argv[1] + "?mode=ro", uri=True)
for (table,) in store.execute("select name from sqlite_master where type = 'table'"):
    print(table, [column[1] for column in store.execute("pragma table_info(%s)" % table)])
for entry in store.execute("select errorId, errorDesc from ErrorLogs"):
    print(entry)
