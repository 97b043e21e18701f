// SPDX-License-Identifier: MIT
// truss: tests
//
// A server for forms on a loopback port of the system's choice: node formserver.js <directory>
//
// Tells on standard output its port, and what happens to it, a line each. Ends when standard input does. A posted form
// is answered with a line for each part, and its files are written to the directory under the names of their parts.
'use strict';

const busboy = require('busboy');
const fs = require('fs');
const http = require('http');
const path = require('path');

function say(line) {
    fs.writeSync(1, line + '\n');
}

function collect(stream, done) {
    const chunks = [];
    stream.on('data', chunk => chunks.push(chunk));
    stream.on('end', () => done(Buffer.concat(chunks)));
}

function keepForm(request, response) {
    const parts = [];
    const parser = busboy({headers: request.headers, limits: {fieldSize: Infinity}});
    parser.on('field', (name, value) => { parts.push(`${name}=${value}\n`); });
    parser.on('file', (name, file, {filename, mimeType}) => {
        const place = parts.push('') - 1; // what follows may come to light before the file has ended
        collect(file, bytes => {
            fs.writeFileSync(path.join(process.argv[2], name), bytes);
            parts[place] = `${name}: ${filename} ${mimeType} ${bytes.length}\n`;
        });
    });
    parser.on('error', error => response.writeHead(400).end(error.message));
    parser.on('close', () => response.end(parts.join('')));
    request.pipe(parser);
}

const behaviours = {
    '/form': keepForm,
    '/bytes': (request, response) => collect(request, () => response.end(Buffer.from([0x67, 0xe9]))),
    '/created': (request, response) => collect(request, () => response.writeHead(201).end('made')),
    '/failing': (request, response) => collect(request, () => response.writeHead(500).end('broken')),
    '/moved': (request, response) => collect(request, () => response.writeHead(302, {Location: '/form'}).end()),
    '/flood': (request, response) => collect(request, () => response.end(Buffer.alloc(2 << 20, 'x'))),
    '/cut': (request, response) => collect(request, () => {
        response.writeHead(200, {'Content-Length': 100});
        response.write('part', () => request.socket.destroy());
    }),
    '/reset': request => request.once('data', () => request.socket.resetAndDestroy()),
    '/silent': request => collect(request, () => say('received')), // never answers
    '/deaf': () => {}, // never reads the body
};

const server = http.createServer((request, response) => {
    say('request');
    request.on('error', () => {}); // the client may go away
    response.on('close', () => say('closed'));
    behaviours[request.url](request, response);
});
server.listen(0, '127.0.0.1', () => say(server.address().port));

process.stdin.on('end', () => process.exit()).resume();
