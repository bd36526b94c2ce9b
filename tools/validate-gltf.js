// node validate-gltf.js PACKAGE FILE...: started by tools/validate-gltf.
'use strict';
const fs = require('fs');
const path = require('path');
const validator = require(path.resolve(process.argv[2]));

const kNames = ['error', 'warning'];

async function check(file) {
    const folder = path.dirname(file);
    const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
        uri: path.basename(file),
        maxIssues: 0, // all of them
        externalResourceFunction: async (uri) =>
            new Uint8Array(fs.readFileSync(path.join(folder, decodeURIComponent(uri)))),
    });
    const bad = report.issues.messages.filter((message) => message.severity < kNames.length);
    for (const message of bad.slice(0, 50))
        console.log(`${file}: ${kNames[message.severity]}: ${message.pointer || ''} ` +
                    `${message.code}: ${message.message}`);
    return bad.length === 0;
}

(async () => {
    let isSound = true;
    for (const file of process.argv.slice(3)) {
        try {
            isSound = await check(file) && isSound;
        } catch (error) {
            console.log(`${file}: ${error}`);
            isSound = false;
        }
    }
    process.exit(isSound ? 0 : 1);
})();
