// Requests to the gateway. A refusal is an answer, not an exception: callers look at `ok`.

/** @typedef {import('../types').Problem} Problem */
/** @typedef {{ok: boolean, status: number, body: any}} Answer */

/** @type {() => void} */
let signedOut = () => {};

/** @param {() => void} listener called when the gateway no longer knows who is asking */
export function onSignedOut(listener) {
    signedOut = listener;
}

/**
 * @param {string} method
 * @param {string} path below /api/v1
 * @param {unknown} [body] sent as JSON
 * @param {Record<string, string>} [headers]
 * @returns {Promise<Answer>} status 0 if the gateway cannot be reached
 */
export async function request(method, path, body, headers = {}) {
    const options = { method, headers: { ...headers }, credentials: /** @type {const} */ ('same-origin') };
    if (method !== 'GET') {
        options.headers['Content-Type'] ??= 'application/json';
    }
    try {
        const sent = body === undefined ? undefined : typeof body === 'string' ? body : JSON.stringify(body);
        const response = await fetch(`/api/v1${path}`, { ...options, body: sent });
        if (response.status === 401 && path !== '/login') {
            signedOut();
        }
        return { ok: response.ok, status: response.status, body: await readBody(response) };
    } catch {
        return { ok: false, status: 0, body: null };
    }
}

/** @param {Response} response */
async function readBody(response) {
    const type = response.headers.get('Content-Type') ?? '';
    const text = await response.text();
    return type.includes('json') && text ? JSON.parse(text) : text;
}

/** @param {string} path */
export const get = (path) => request('GET', path);

/** The parts of a path, safe in an address. @param {...string} parts */
export const pathOf = (...parts) => '/' + parts.map(encodeURIComponent).join('/');

/** What to say about an answer that is not good. @param {Answer} answer @param {string} unreachable */
export function problemText(answer, unreachable) {
    if (answer.status === 0) {
        return unreachable;
    }
    const problem = /** @type {Problem} */ (answer.body ?? {});
    return problem.detail || problem.title || `${answer.status}`;
}
