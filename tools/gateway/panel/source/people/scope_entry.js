import { t } from '../text/text.js';
import { make, makeField, makeSelect } from '../dom/element.js';

const roles = ['viewer', 'operator', 'engineer', 'admin'];

/** Fields for a role and where it holds. @param {string} role @param {import('../types').Scope[]} scopes */
export function makeRoleFields(role, scopes) {
    const select = makeSelect(roles.map((name) => [name, t(/** @type {any} */ (`role.${name}`))]), role);
    const devices = make('input', { value: scopes[0]?.devices ?? '*', required: true });
    const properties = make('input', { value: scopes[0]?.properties ?? '*', required: true });
    return {
        fields: [makeField(t('person.role.label'), select), makeField(t('scope.devices'), devices, t('scope.note')), makeField(t('scope.properties'), properties)],
        read: () => ({ role: select.value, scopes: [{ devices: devices.value, properties: properties.value }] }),
    };
}

/** @param {import('../types').Scope[]} scopes */
export const scopesText = (scopes) => scopes.map((scope) => t('scope', { devices: scope.devices, properties: scope.properties })).join('; ');
