// The views. The one that is asked for comes first; the others follow while the page is idle, so that they are there
// even when the gateway is not.

/** @type {Record<string, [string, () => Promise<unknown>]>} */
const views = {
    fleet: ['fleet-view', () => import('../fleet/fleet_view.js')],
    device: ['device-view', () => import('../device/device_view.js')],
    history: ['history-view', () => import('../history/history_view.js')],
    salvos: ['salvos-view', () => import('../salvos/salvos_view.js')],
    people: ['people-view', () => import('../people/people_view.js')],
};

/** @param {string} view @returns {Promise<string>} the name of its element */
export async function loadView(view) {
    const [name, load] = views[view] ?? views.fleet;
    try {
        await load();
    } catch {
        // The gateway has been updated, and has this version's files no longer.
        location.reload();
    }
    return name;
}

export function loadAllViews() {
    const load = () => Object.keys(views).forEach(loadView);
    if ('requestIdleCallback' in window) {
        requestIdleCallback(load);
    } else {
        setTimeout(load, 500);
    }
}
