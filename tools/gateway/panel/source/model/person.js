// Who is signed in, and what they may do. The gateway decides; this only lets the panel say so beforehand.

/** @typedef {import('../types').Person} Person */

const ranks = ['viewer', 'operator', 'engineer', 'admin'];

/** The role that each action needs at least. */
const needs = {
    see: 'viewer',
    set: 'operator',
    runSalvo: 'operator',
    editSalvo: 'engineer',
    editFleet: 'engineer',
    seeAudit: 'engineer',
    maintain: 'admin',
    managePeople: 'admin',
};

/** @typedef {keyof typeof needs} Action */

export const actions = /** @type {Action[]} */ (Object.keys(needs));

/** @type {Person | null} */
let person = null;

/** @param {Person | null} who */
export function setPerson(who) {
    person = who;
}

export const currentPerson = () => person;

/** @param {Action} action */
export const roleFor = (action) => needs[action];

/** @param {Action} action @param {string} [device] @param {string} [property] */
export function may(action, device, property) {
    if (!person || ranks.indexOf(person.role) < ranks.indexOf(needs[action])) {
        return false;
    }
    return !device || person.scopes.some((scope) => matches(scope.devices, device) && (!property || matches(scope.properties, property)));
}

/** Whether a pattern means a name: a name, the part of names before a point, * for any letters, ? for one. @param {string} pattern @param {string} name */
export function matches(pattern, name) {
    const expression = pattern.replace(/[.+^${}()|[\]\\]/g, '\\$&').replaceAll('*', '.*').replaceAll('?', '.');
    return new RegExp(`^${expression}(\\..*)?$`, 'i').test(name);
}
