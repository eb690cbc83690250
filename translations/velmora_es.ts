<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>About</name>
    <message>
        <source>&amp;Help</source>
        <translation>Ay&amp;uda</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Estado</translation>
    </message>
</context>
<context>
    <name>BatchExport</name>
    <message>
        <source>Batch Export</source>
        <translation>Exportación por lotes</translation>
    </message>
    <message>
        <source>E&amp;xport records saved in the last</source>
        <translation>E&amp;xportar las fichas guardadas en los últimos</translation>
    </message>
    <message>
        <source>Number of days</source>
        <translation>Número de días</translation>
    </message>
    <message>
        <source>days</source>
        <translation>días</translation>
    </message>
    <message>
        <source>&amp;Erase previously exported charts first</source>
        <translation>&amp;Borrar antes las gráficas ya exportadas</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Destino</translation>
    </message>
</context>
<context>
    <name>BatchExportController</name>
    <message>
        <source>Export</source>
        <translation>Exportar</translation>
    </message>
    <message>
        <source>The charts are sent to OsiriX.</source>
        <translation>Las gráficas se envían a OsiriX.</translation>
    </message>
    <message>
        <source>The charts go to the folder &apos;%@&apos;. Erasing removes every JPEG picture in it, whatever program made it.</source>
        <translation>Las gráficas van a la carpeta «%@». Al borrar se elimina toda imagen JPEG que haya en ella, la haya hecho el programa que la haya hecho.</translation>
    </message>
    <message>
        <source>The export folder is not available</source>
        <translation>La carpeta de exportación no está disponible</translation>
    </message>
    <message>
        <source>You can select a new export folder by choosing the Preferences menu item.</source>
        <translation>Puede elegir otra carpeta de exportación con la orden Preferencias del menú.</translation>
    </message>
</context>
<context>
    <name>BatchProgress</name>
    <message>
        <source>Batch Export</source>
        <translation>Exportación por lotes</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Estado</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Archivo</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Exporting %ld of %ld</source>
        <translation>Exportando %ld de %ld</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>One chart waits to be sent to OsiriX</source>
        <translation>Una gráfica espera a ser enviada a OsiriX</translation>
    </message>
    <message>
        <source>%ld charts wait to be sent to OsiriX</source>
        <translation>%ld gráficas esperan a ser enviadas a OsiriX</translation>
    </message>
</context>
<context>
    <name>Document</name>
    <message>
        <source>Untitled</source>
        <translation>Sin título</translation>
    </message>
    <message>
        <source>Do you want to save the changes to &apos;%@&apos;?</source>
        <translation>¿Desea guardar los cambios de «%@»?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>No guardar</translation>
    </message>
    <message>
        <source>Your changes will be lost if you don&apos;t save them.</source>
        <translation>Sus cambios se perderán si no los guarda.</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; could not be opened.</source>
        <translation>No se pudo abrir el archivo «%@».</translation>
    </message>
    <message>
        <source>You have %ld documents with unsaved changes. Do you want to review these changes before quitting?</source>
        <translation>Hay %ld documentos con cambios sin guardar. ¿Desea revisar estos cambios antes de salir?</translation>
    </message>
    <message>
        <source>Review Changes...</source>
        <translation>Revisar los cambios...</translation>
    </message>
    <message>
        <source>Discard Changes</source>
        <translation>Descartar los cambios</translation>
    </message>
    <message>
        <source>If you don&apos;t review your documents, all your changes will be lost.</source>
        <translation>Si no revisa sus documentos, se perderán todos los cambios.</translation>
    </message>
    <message>
        <source>The document could not be saved as &apos;%@&apos;.</source>
        <translation>No se pudo guardar el documento como «%@».</translation>
    </message>
    <message>
        <source>There is no printer.</source>
        <translation>No hay ninguna impresora.</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; was not printed.</source>
        <translation>No se imprimió el archivo «%@».</translation>
    </message>
    <message>
        <source>The help is not installed.</source>
        <translation>La ayuda no está instalada.</translation>
    </message>
    <message>
        <source>It was looked for in the folder %@.</source>
        <translation>Se buscó en la carpeta %@.</translation>
    </message>
    <message>
        <source>The help could not be shown.</source>
        <translation>No se pudo mostrar la ayuda.</translation>
    </message>
    <message>
        <source>No program opens the page %@.</source>
        <translation>Ningún programa abre la página %@.</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Fichas</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Todos los archivos</translation>
    </message>
    <message>
        <source>&apos;%@&apos; already exists. Do you want to replace it?</source>
        <translation>«%@» ya existe. ¿Desea reemplazarlo?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Reemplazar</translation>
    </message>
    <message>
        <source>There is nothing to print.</source>
        <translation>No hay nada que imprimir.</translation>
    </message>
    <message>
        <source>The printer could not be started.</source>
        <translation>No se pudo iniciar la impresión.</translation>
    </message>
    <message>
        <source>The printer reported an error.</source>
        <translation>La impresora ha comunicado un error.</translation>
    </message>
</context>
<context>
    <name>OrvDocument</name>
    <message>
        <source>The file is empty.</source>
        <translation>El archivo está vacío.</translation>
    </message>
    <message>
        <source>The file is damaged (%@ at byte %ld).</source>
        <translation>El archivo está dañado (%@ en el byte %ld).</translation>
    </message>
    <message>
        <source>The file is not a record of this application.</source>
        <translation>El archivo no es una ficha de esta aplicación.</translation>
    </message>
    <message>
        <source>The file is damaged (its header is incomplete).</source>
        <translation>El archivo está dañado (su cabecera está incompleta).</translation>
    </message>
    <message>
        <source>The file was written by a newer version of the application (%@).</source>
        <translation>El archivo procede de una versión más nueva de la aplicación (%@).</translation>
    </message>
    <message>
        <source>The file is damaged (its checksum does not match).</source>
        <translation>El archivo está dañado (su suma de comprobación no coincide).</translation>
    </message>
    <message>
        <source>The document could not be printed.</source>
        <translation>No se pudo imprimir el documento.</translation>
    </message>
    <message>
        <source>Another record stands there under this name, and no copy of it could be kept.</source>
        <translation>Allí hay otra ficha con este nombre, y no se pudo conservar una copia de ella.</translation>
    </message>
    <message>
        <source>The record &apos;%@&apos; had been removed by somebody else.</source>
        <translation>Otra persona había eliminado la ficha «%@».</translation>
    </message>
    <message>
        <source>It has been saved again.</source>
        <translation>Se ha vuelto a guardar.</translation>
    </message>
    <message>
        <source>Another version of the record &apos;%@&apos; was in its place.</source>
        <translation>En su lugar había otra versión de la ficha «%@».</translation>
    </message>
    <message>
        <source>Yours has been saved. The other one, which somebody else may have written, was kept as &apos;%@&apos;.</source>
        <translation>La suya se ha guardado. La otra, que quizá escribió otra persona, se conservó como «%@».</translation>
    </message>
    <message>
        <source>Unsaved changes to &apos;%@&apos; could not be kept.</source>
        <translation>No se pudieron conservar los cambios sin guardar de «%@».</translation>
    </message>
    <message>
        <source>Unsaved changes to &apos;%@&apos; are about to be dropped.</source>
        <translation>Los cambios sin guardar de «%@» están a punto de perderse.</translation>
    </message>
    <message>
        <source>No copy of them could be kept.</source>
        <translation>No se pudo conservar ninguna copia de ellos.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; was closed with unsaved changes</source>
        <translation>«%@» se cerró con cambios sin guardar</translation>
    </message>
    <message>
        <source>A copy with the changes was kept as &apos;%@&apos;.</source>
        <translation>Se conservó una copia con los cambios como «%@».</translation>
    </message>
    <message>
        <source>The record &apos;%@&apos; could not be saved.</source>
        <translation>No se pudo guardar la ficha «%@».</translation>
    </message>
    <message>
        <source>A copy was kept as &apos;%@&apos;.</source>
        <translation>Se conservó una copia como «%@».</translation>
    </message>
    <message>
        <source>No copy could be kept either.</source>
        <translation>Tampoco se pudo conservar una copia.</translation>
    </message>
    <message>
        <source>Save Elsewhere...</source>
        <translation>Guardar en otro lugar...</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>No guardar</translation>
    </message>
    <message>
        <source>Save Elsewhere</source>
        <translation>Guardar en otro lugar</translation>
    </message>
</context>
<context>
    <name>OrvVersion</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>That is not the address of a web page.</source>
        <translation>Esa no es la dirección de una página web.</translation>
    </message>
    <message>
        <source>The server took too long to answer.</source>
        <translation>El servidor tardó demasiado en responder.</translation>
    </message>
    <message>
        <source>The server&apos;s answer is too large.</source>
        <translation>La respuesta del servidor es demasiado grande.</translation>
    </message>
    <message>
        <source>The server leads from one address to the next without end.</source>
        <translation>El servidor remite sin fin de una dirección a otra.</translation>
    </message>
    <message>
        <source>The server leads to an address that is not safe.</source>
        <translation>El servidor remite a una dirección que no es segura.</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be made.</source>
        <translation>No se pudo establecer una conexión segura con el servidor.</translation>
    </message>
    <message>
        <source>The server broke the connection off.</source>
        <translation>El servidor interrumpió la conexión.</translation>
    </message>
    <message>
        <source>The server&apos;s answer could not be understood.</source>
        <translation>No se pudo entender la respuesta del servidor.</translation>
    </message>
    <message>
        <source>The server could not be reached.</source>
        <translation>No se pudo contactar con el servidor.</translation>
    </message>
    <message>
        <source>The server answered with status %@.</source>
        <translation>El servidor respondió con el estado %@.</translation>
    </message>
    <message>
        <source>The list of versions could not be understood.</source>
        <translation>No se pudo entender la lista de versiones.</translation>
    </message>
    <message>
        <source>The list of versions names no version.</source>
        <translation>La lista de versiones no nombra ninguna versión.</translation>
    </message>
    <message>
        <source>This application does not say where to look for new versions.</source>
        <translation>Esta aplicación no dice dónde buscar versiones nuevas.</translation>
    </message>
    <message>
        <source>%@ is up to date</source>
        <translation>%@ está actualizado</translation>
    </message>
    <message>
        <source>Version %@ is the newest one.</source>
        <translation>La versión %@ es la más reciente.</translation>
    </message>
    <message>
        <source>The check for a new version failed</source>
        <translation>La búsqueda de una versión nueva ha fallado</translation>
    </message>
    <message>
        <source>Version %@ is available. You have version %@.</source>
        <translation>La versión %@ está disponible. Usted tiene la versión %@.</translation>
    </message>
    <message>
        <source>A new version of %@ is available</source>
        <translation>Hay una versión nueva de %@</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Descargar</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Más tarde</translation>
    </message>
    <message>
        <source>The page could not be opened</source>
        <translation>No se pudo abrir la página</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Preferencias</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Fichas</translation>
    </message>
    <message>
        <source>&amp;Save folder</source>
        <translation>Carpeta de &amp;guardado</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>&amp;Elegir...</translation>
    </message>
    <message>
        <source>Choose the save folder</source>
        <translation>Elegir la carpeta de guardado</translation>
    </message>
    <message>
        <source>Choose the folder in which records are kept</source>
        <translation>Elegir la carpeta en la que se conservan las fichas</translation>
    </message>
    <message>
        <source>S&amp;how</source>
        <translation>&amp;Mostrar</translation>
    </message>
    <message>
        <source>Show the save folder</source>
        <translation>Mostrar la carpeta de guardado</translation>
    </message>
    <message>
        <source>Show this folder in the file manager</source>
        <translation>Mostrar esta carpeta en el gestor de archivos</translation>
    </message>
    <message>
        <source>&amp;Keep records in this folder automatically</source>
        <translation>&amp;Conservar las fichas en esta carpeta automáticamente</translation>
    </message>
    <message>
        <source>Save each record under its identifier, and find it again when the patient returns</source>
        <translation>Guardar cada ficha con su identificador y encontrarla cuando el paciente vuelve</translation>
    </message>
    <message>
        <source>Charts</source>
        <translation>Gráficas</translation>
    </message>
    <message>
        <source>&amp;Export charts to</source>
        <translation>E&amp;xportar las gráficas a</translation>
    </message>
    <message>
        <source>A folder</source>
        <translation>Una carpeta</translation>
    </message>
    <message>
        <source>OsiriX</source>
        <translation>OsiriX</translation>
    </message>
    <message>
        <source>Export &amp;folder</source>
        <translation>Carpeta de expo&amp;rtación</translation>
    </message>
    <message>
        <source>Ch&amp;oose...</source>
        <translation>E&amp;legir...</translation>
    </message>
    <message>
        <source>Choose the export folder</source>
        <translation>Elegir la carpeta de exportación</translation>
    </message>
    <message>
        <source>Choose the folder into which charts are exported</source>
        <translation>Elegir la carpeta a la que se exportan las gráficas</translation>
    </message>
    <message>
        <source>Sho&amp;w</source>
        <translation>M&amp;ostrar</translation>
    </message>
    <message>
        <source>Show the export folder</source>
        <translation>Mostrar la carpeta de exportación</translation>
    </message>
    <message>
        <source>Start-up script</source>
        <translation>Script de inicio</translation>
    </message>
    <message>
        <source>This shell scri&amp;pt runs each time the application starts, with all of your rights. Leave it empty to run nothing.</source>
        <translation>Este scri&amp;pt de shell se ejecuta cada vez que se inicia la aplicación, con todos los derechos de usted. Déjelo vacío para no ejecutar nada.</translation>
    </message>
    <message>
        <source>Script error</source>
        <translation>Error en el script</translation>
    </message>
    <message>
        <source>Check S&amp;yntax</source>
        <translation>Comprobar sin&amp;taxis</translation>
    </message>
    <message>
        <source>Look for mistakes in the script without running it</source>
        <translation>Buscar errores en el script sin ejecutarlo</translation>
    </message>
    <message>
        <source>New versions</source>
        <translation>Versiones nuevas</translation>
    </message>
    <message>
        <source>Look for new versions &amp;automatically</source>
        <translation>Buscar &amp;versiones nuevas automáticamente</translation>
    </message>
    <message>
        <source>&amp;Interval</source>
        <translation>&amp;Intervalo</translation>
    </message>
    <message>
        <source>Daily</source>
        <translation>Diariamente</translation>
    </message>
    <message>
        <source>Weekly</source>
        <translation>Semanalmente</translation>
    </message>
    <message>
        <source>Monthly</source>
        <translation>Mensualmente</translation>
    </message>
    <message>
        <source>Last check</source>
        <translation>Última comprobación</translation>
    </message>
    <message>
        <source>Check &amp;Now</source>
        <translation>Comprobar a&amp;hora</translation>
    </message>
    <message>
        <source>Look for a new version now</source>
        <translation>Buscar ahora una versión nueva</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nunca</translation>
    </message>
    <message>
        <source>%@ at %@</source>
        <translation>%@ a las %@</translation>
    </message>
    <message>
        <source>Folder Missing</source>
        <translation>Falta la carpeta</translation>
    </message>
    <message>
        <source>The specified folder is not currently available.</source>
        <translation>La carpeta indicada no está disponible en este momento.</translation>
    </message>
    <message>
        <source>Install OsiriX Plugin</source>
        <translation>Instalar el complemento de OsiriX</translation>
    </message>
    <message>
        <source>Once installed, the plugin will be available the next time OsiriX is launched.</source>
        <translation>Una vez instalado, el complemento estará disponible la próxima vez que se inicie OsiriX.</translation>
    </message>
    <message>
        <source>OsiriX may be downloaded from </source>
        <translation>OsiriX se puede descargar desde </translation>
    </message>
</context>
<context>
    <name>Script</name>
    <message>
        <source>The script cannot be started: %@</source>
        <translation>No se puede iniciar el script: %@</translation>
    </message>
    <message>
        <source>The script was stopped.</source>
        <translation>El script se detuvo.</translation>
    </message>
    <message>
        <source>The script ended with status %@.</source>
        <translation>El script terminó con el estado %@.</translation>
    </message>
    <message>
        <source>The script was ended by signal %@.</source>
        <translation>El script terminó por la señal %@.</translation>
    </message>
    <message>
        <source>The shell cannot read this script.</source>
        <translation>El shell no puede leer este script.</translation>
    </message>
</context>
<context>
    <name>SplashController</name>
    <message>
        <source>Build %@ (%s)</source>
        <translation>Compilación %@ (%s)</translation>
    </message>
</context>
<context>
    <name>VelmoraAppController</name>
    <message>
        <source>Caching database...</source>
        <translation>Leyendo la base de datos...</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Archivo</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Edición</translation>
    </message>
    <message>
        <source>E&amp;xamination</source>
        <translation>E&amp;xploración</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>Ay&amp;uda</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Nuevo</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Abrir...</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>Abrir &amp;reciente</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Cerrar</translation>
    </message>
    <message>
        <source>C&amp;lose All</source>
        <translation>Cerrar &amp;todo</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Guardar co&amp;mo...</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>E&amp;xportar</translation>
    </message>
    <message>
        <source>&amp;Batch Export...</source>
        <translation>Exportación por &amp;lotes...</translation>
    </message>
    <message>
        <source>Pa&amp;ge Setup...</source>
        <translation>Configurar &amp;página...</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>&amp;Imprimir...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Salir</translation>
    </message>
    <message>
        <source>Prefere&amp;nces...</source>
        <translation>Pre&amp;ferencias...</translation>
    </message>
    <message>
        <source>&amp;New Examination</source>
        <translation>&amp;Nueva exploración</translation>
    </message>
    <message>
        <source>&amp;Delete Examination...</source>
        <translation>&amp;Eliminar exploración...</translation>
    </message>
    <message>
        <source>Ne&amp;xt Examination</source>
        <translation>Exploración &amp;siguiente</translation>
    </message>
    <message>
        <source>&amp;Previous Examination</source>
        <translation>Exploración &amp;anterior</translation>
    </message>
    <message>
        <source>%@ &amp;Help</source>
        <translation>&amp;Ayuda de %@</translation>
    </message>
    <message>
        <source>Check for New &amp;Version...</source>
        <translation>Buscar una &amp;versión nueva...</translation>
    </message>
    <message>
        <source>&amp;Web Site</source>
        <translation>Sitio &amp;web</translation>
    </message>
    <message>
        <source>&amp;Contact Support...</source>
        <translation>&amp;Contactar con el soporte...</translation>
    </message>
    <message>
        <source>&amp;About %@</source>
        <translation>Acerca &amp;de %@</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rehacer</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Pegar</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Eliminar</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Seleccionar todo</translation>
    </message>
    <message>
        <source>&amp;Clear Menu</source>
        <translation>&amp;Vaciar el menú</translation>
    </message>
    <message>
        <source>&amp;Remember Recent Documents</source>
        <translation>&amp;Recordar los documentos recientes</translation>
    </message>
    <message>
        <source>Running startup script...</source>
        <translation>Ejecutando el script de inicio...</translation>
    </message>
    <message>
        <source>Startup script error</source>
        <translation>Error en el script de inicio</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportar</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; is no longer there.</source>
        <translation>El archivo «%@» ya no está.</translation>
    </message>
    <message>
        <source>It may have been moved or renamed. The menu of recent documents no longer names it.</source>
        <translation>Quizá se haya movido o cambiado de nombre. El menú de documentos recientes ya no lo nombra.</translation>
    </message>
    <message>
        <source>Periodically check for updates?</source>
        <translation>¿Buscar actualizaciones periódicamente?</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Don&apos;t Check</source>
        <translation>No buscar</translation>
    </message>
    <message>
        <source>You can change this setting later by choosing Preferences from the %@ menu.</source>
        <translation>Podrá cambiar este ajuste más tarde en las preferencias de %@.</translation>
    </message>
    <message>
        <source>Set Up Database?</source>
        <translation>¿Configurar la base de datos?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Would you like to automatically configure the default database?

You can alter the default settings later in the preferences.</source>
        <translation>¿Desea configurar automáticamente la base de datos predeterminada?

Podrá cambiar estos ajustes más tarde en las preferencias.</translation>
    </message>
    <message>
        <source>Update OsiriX Plugin</source>
        <translation>Actualizar el complemento de OsiriX</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>This is a recommended update of the OsiriX plugin.</source>
        <translation>Se recomienda esta actualización del complemento de OsiriX.</translation>
    </message>
    <message>
        <source>~/Documents/%@ Data</source>
        <translation>~/Documents/%@ Data</translation>
    </message>
    <message>
        <source>Checking for new version...</source>
        <translation>Buscando una versión nueva...</translation>
    </message>
    <message>
        <source>Version check successful...</source>
        <translation>Búsqueda de versión nueva terminada...</translation>
    </message>
    <message>
        <source>Version check unsuccessful...</source>
        <translation>Búsqueda de versión nueva sin éxito...</translation>
    </message>
    <message>
        <source>The batch export has closed records with unsaved changes</source>
        <translation>La exportación por lotes ha cerrado fichas con cambios sin guardar</translation>
    </message>
    <message>
        <source>Copies with the changes were kept as:
%@</source>
        <translation>Se conservaron copias con los cambios como:
%@</translation>
    </message>
    <message>
        <source>No examination was added to &apos;%@&apos;</source>
        <translation>No se añadió ninguna exploración a «%@»</translation>
    </message>
    <message>
        <source>Installation Succeeded</source>
        <translation>Instalación completada</translation>
    </message>
    <message>
        <source>The plugin will be available the next time OsiriX is launched.</source>
        <translation>El complemento estará disponible la próxima vez que se inicie OsiriX.</translation>
    </message>
    <message>
        <source>Installation Failed</source>
        <translation>Error en la instalación</translation>
    </message>
</context>
<context>
    <name>VelmoraDocument</name>
    <message>
        <source>&amp;Identifier</source>
        <translation>&amp;Identificador</translation>
    </message>
    <message>
        <source>&amp;Born</source>
        <translation>&amp;Nacimiento</translation>
    </message>
    <message>
        <source>Exa&amp;mined</source>
        <translation>Explo&amp;ración</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Anterior</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>Gráfica</translation>
    </message>
    <message>
        <source>This entry has already been defined</source>
        <translation>Este dato ya está definido</translation>
    </message>
    <message>
        <source>Modify</source>
        <translation>Modificar</translation>
    </message>
    <message>
        <source>Are you sure you want to modify this item?</source>
        <translation>¿Seguro que desea modificar este dato?</translation>
    </message>
    <message>
        <source>Are you sure you want to remove this exam?</source>
        <translation>¿Seguro que desea quitar esta exploración?</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>%ld of %ld</source>
        <translation>%ld de %ld</translation>
    </message>
    <message>
        <source>A file with that name already exists</source>
        <translation>Ya existe un archivo con ese nombre</translation>
    </message>
    <message>
        <source>Overwrite</source>
        <translation>Sobrescribir</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Omitir</translation>
    </message>
    <message>
        <source>A file named &apos;%@&apos; is already present in &apos;%@/&apos;.</source>
        <translation>Ya hay un archivo llamado «%@» en «%@/».</translation>
    </message>
    <message>
        <source>%@ Chart</source>
        <translation>%@ Gráfica</translation>
    </message>
    <message>
        <source>Patient Data Found</source>
        <translation>Datos del paciente encontrados</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>A previously saved data file is available for patient &apos;%@&apos;.  Would you like to open it?</source>
        <translation>Hay un archivo guardado anteriormente del paciente «%@».  ¿Desea abrirlo?</translation>
    </message>
    <message>
        <source>The file was saved for patient &apos;%@&apos;, but the identifier in it reads &apos;%@&apos;.</source>
        <translation>El archivo se guardó para el paciente «%@», pero el identificador que contiene es «%@».</translation>
    </message>
    <message>
        <source>&apos;%@&apos; is the record of another patient</source>
        <translation>«%@» es la ficha de otro paciente</translation>
    </message>
    <message>
        <source>Recently Printed</source>
        <translation>Impreso recientemente</translation>
    </message>
    <message>
        <source>This document was printed in the last 30 seconds.</source>
        <translation>Este documento se imprimió en los últimos 30 segundos.</translation>
    </message>
    <message>
        <source>The identifier of this record has changed</source>
        <translation>El identificador de esta ficha ha cambiado</translation>
    </message>
    <message>
        <source>New File</source>
        <translation>Archivo nuevo</translation>
    </message>
    <message>
        <source>Same File</source>
        <translation>Mismo archivo</translation>
    </message>
    <message>
        <source>It was &apos;%@&apos; and is now &apos;%@&apos;. With a new file the record of &apos;%@&apos; stays as it was last saved.</source>
        <translation>Era «%@» y ahora es «%@». Con un archivo nuevo, la ficha de «%@» queda como se guardó por última vez.</translation>
    </message>
    <message>
        <source>Save changes to document?</source>
        <translation>¿Guardar los cambios del documento?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>Save As...</source>
        <translation>Guardar como...</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>No guardar</translation>
    </message>
    <message>
        <source>This is not a date. A date looks like %@.</source>
        <translation>Esto no es una fecha. Una fecha se escribe así: %@.</translation>
    </message>
    <message>
        <source>for example %@</source>
        <translation>por ejemplo %@</translation>
    </message>
</context>
</TS>
