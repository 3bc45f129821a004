'use strict';

// Reads an ADIF file with tcadif, an established ADIF reader, and prints
// what it found as JSON: the number of records and their fields. A file the
// reader refuses ends the script with status 1 and the reader's message.
// The file is Windows-1252, one byte a character, as its lengths count.
const fs = require('fs');
const { ADIF } = require('tcadif');

const file = process.argv[2];
if (!file) {
    console.error('usage: node check_adif.js FILE');
    process.exit(2);
}
try {
    const text = fs.readFileSync(file).toString('latin1');
    const adif = ADIF.parse(text).toObject();
    process.stdout.write(JSON.stringify({ count: adif.qsos.length, qsos: adif.qsos }) + '\n');
} catch (err) {
    console.error(err && err.message ? err.message : String(err));
    process.exit(1);
}
