// What all views share.
import { get, onSignedOut } from '../api/client.js';
import { EventStream } from '../stream/event_stream.js';
import { Changes } from './changes.js';
import { Fleet } from './fleet.js';
import { setPerson } from './person.js';
import { setProperties } from './properties.js';

/** @typedef {import('../stream/event_stream.js').StreamState} StreamState */

export const fleet = new Fleet();
export const changes = new Changes((device) => fleet.touch(device));

/** Events of the whole panel: `state` (of the stream), `person`, `run` (a salvo's progress), `devices`. */
export const events = new EventTarget();

/** @type {EventStream | null} */
let stream = null;
/** Since when what is shown may be out of date. @type {number | null} */
let lostSince = null;

/** @param {string} type @param {unknown} [detail] */
const announce = (type, detail) => events.dispatchEvent(new CustomEvent(type, { detail }));

export const streamState = () => stream?.state ?? 'connecting';
export const lastLive = () => lostSince;

/** @returns {Promise<boolean>} whether somebody is signed in, or the gateway is open */
export async function readPerson() {
    const answer = await get('/me');
    setPerson(answer.ok ? answer.body : null);
    announce('person');
    return answer.ok;
}

/** @returns {Promise<boolean>} */
export async function readFleet() {
    const answer = await get('/devices');
    if (answer.ok) {
        fleet.replace(answer.body.devices);
        announce('devices');
    }
    return answer.ok;
}

export async function readProperties() {
    const answer = await get('/properties');
    if (answer.ok) {
        setProperties(answer.body.properties ?? answer.body);
    }
    return answer.ok;
}

export function openStream() {
    stream?.stop();
    stream = new EventStream('/api/v1/events', { onEvent: takeEvent, onState: takeState, onSignedOut: takeSignedOut });
    stream.start();
    announce('state');
}

/** @param {string} type @param {any} data */
function takeEvent(type, data) {
    if (type === 'run') {
        announce('run', data.run ?? data);
    } else if (fleet.take(type, data)) {
        readFleet();
    }
}

/** @param {StreamState} state */
function takeState(state) {
    lostSince = state === 'live' ? null : lostSince ?? Date.now();
    announce('state');
    if (state === 'live') {
        readFleet();
    }
}

export function takeSignedOut() {
    stream?.stop();
    setPerson(null);
    announce('person');
    announce('signed-out');
}

onSignedOut(takeSignedOut);
